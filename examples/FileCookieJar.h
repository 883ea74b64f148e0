#pragma once

#include <filesystem>
#include <fstream>
#include <iomanip>
#include <mutex>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <Networking/CookieJar/CookieJar.h>

namespace Recipes {

using namespace Ostrel::Networking;

// [snippet]
/// A `CookieJar` that writes its cookies to a file after every change.
class FileCookieJar final : public ICookieJar {
public:
    explicit FileCookieJar(std::string const& file) : file_(file) {
        std::ifstream in(file, std::ios::binary);
        std::string host;
        Cookie cookie;
        while (in >> std::quoted(host) >> std::quoted(cookie.name) >> std::quoted(cookie.value)) {
            cookie.url.setHost(host);  // The jar uses nothing else of the URL.
            jar_.insertCookie(cookie);
        }
    }

    std::vector<Cookie> cookiesForUrl(Url const& url) const override {
        return jar_.cookiesForUrl(url);
    }
    bool deleteCookie(Cookie const& cookie) override {
        auto const isDeleted = jar_.deleteCookie(cookie);
        save();
        return isDeleted;
    }
    void insertCookie(Cookie const& cookie) override { insertCookie(Cookie(cookie)); }
    void insertCookie(Cookie&& cookie) override {
        jar_.insertCookie(std::move(cookie));
        save();
    }

private:
    /// On failure, for instance on a full disk, the old file and the cookies in memory are kept.
    void save() {
        std::lock_guard const lock(mutex_);
        auto const partial = file_ + ".part";
        std::ofstream out(partial, std::ios::binary);
        std::error_code error;
        std::filesystem::permissions(partial, std::filesystem::perms(0600), error);
        for (auto const& [name, value, url] : jar_.cookiesForUrl(Url())) {  // No host selects all.
            out << std::quoted(url.host()) << std::quoted(name) << std::quoted(value) << '\n';
        }
        out.close();
        if (out && !error) {
            std::filesystem::rename(partial, file_, error);  // Replaces the old file in one step.
        }
    }

    std::string file_;
    CookieJar jar_;
    std::mutex mutex_;  // Guards the file.
};
// [/snippet]

}  // namespace Recipes
