#pragma once

#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include <Networking/CookieJar/CookieJar.h>

#include "examples/CookieFile.h"

namespace Recipes {

using namespace Ostrel::Networking;

// [snippet]
/// A `CookieJar` that writes its cookies to a file after every change.
class FileCookieJar final : public ICookieJar {
public:
    explicit FileCookieJar(std::string const& file) : file_(file) {
        for (auto const& cookie : readCookies(file)) {
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
    void save() {
        std::lock_guard const lock(mutex_);
        writeCookies(file_, jar_.cookiesForUrl(Url()));  // No host selects all.
    }

    std::string file_;
    CookieJar jar_;
    std::mutex mutex_;  // Guards the file.
};
// [/snippet]

}  // namespace Recipes
