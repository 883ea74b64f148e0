#pragma once

#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include <Networking/CookieJar/CookieJar.h>

namespace Recipes {

using namespace Ostrel::Networking;

// [snippet]
/// Keeps a jar for each host and protocol. Each jar gets only the cookies that were set there.
class HostCookieJar final : public ICookieJar {
public:
    std::vector<Cookie> cookiesForUrl(Url const& url) const override {
        return jarOf(url).cookiesForUrl(url);
    }
    bool deleteCookie(Cookie const& cookie) override {
        return jarOf(cookie.url).deleteCookie(cookie);
    }
    void insertCookie(Cookie const& cookie) override { jarOf(cookie.url).insertCookie(cookie); }
    void insertCookie(Cookie&& cookie) override {
        jarOf(cookie.url).insertCookie(std::move(cookie));
    }

private:
    CookieJar& jarOf(Url const& url) const {
        std::lock_guard const lock(mutex_);
        return jars_[url.protocol() + "://" + url.host()];
    }

    mutable std::map<std::string, CookieJar> jars_;
    mutable std::mutex mutex_;  // Guards the map. The jars guard themselves.
};
// [/snippet]

}  // namespace Recipes
