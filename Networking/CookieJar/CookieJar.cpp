#include "Networking/CookieJar/CookieJar.h"

#include <map>
#include <mutex>
#include <string>
#include <type_traits>
#include <utility>

namespace Ostrel::Networking {

class QORNETWORKING_HIDDEN CookieJar::Impl {
public:
    std::vector<Cookie> cookiesForUrl(Url const& url) const {
        auto const host = url.host();
        std::vector<Cookie> selected;
        std::lock_guard const lock(mutex_);
        // The ids that start with the host are adjacent, from the first one not less than the host.
        for (auto entry = cookies_.lower_bound(host);
             entry != cookies_.end() && entry->first.compare(0, host.size(), host) == 0; ++entry) {
            selected.push_back(entry->second);
        }
        return selected;
    }

    bool deleteCookie(Cookie const& cookie) {
        std::lock_guard const lock(mutex_);
        return cookies_.erase(cookieId(cookie)) > 0;
    }

    void insertCookie(Cookie&& cookie) {
        // So a stored cookie is replaced as a whole or, if memory runs out, not at all.
        static_assert(std::is_nothrow_move_assignable_v<Cookie>);
        auto id = cookieId(cookie);
        std::lock_guard const lock(mutex_);
        cookies_.insert_or_assign(std::move(id), std::move(cookie));
    }

private:
    static std::string cookieId(Cookie const& cookie) { return cookie.url.host() + cookie.name; }

    std::map<std::string, Cookie> cookies_;
    mutable std::mutex mutex_;  // Guards `cookies_`.
};

CookieJar::CookieJar() : impl_(std::make_unique<Impl>()) {}
CookieJar::~CookieJar() = default;

std::vector<Cookie> CookieJar::cookiesForUrl(Url const& url) const {
    return impl_->cookiesForUrl(url);
}

bool CookieJar::deleteCookie(Cookie const& cookie) { return impl_->deleteCookie(cookie); }

void CookieJar::insertCookie(Cookie const& cookie) { impl_->insertCookie(Cookie(cookie)); }

void CookieJar::insertCookie(Cookie&& cookie) { impl_->insertCookie(std::move(cookie)); }

}  // namespace Ostrel::Networking
