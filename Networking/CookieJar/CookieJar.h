#pragma once

#include <memory>
#include <vector>

#include "Networking/CookieJar/ICookieJar.h"
#include "Networking/Export.h"

namespace Ostrel::Networking {

/// Stores cookies in memory, one for each id. The id is the host of the cookie's URL directly
/// followed by the cookie's name; cookies with equal ids are the same cookie, whatever else they
/// contain. A cookie belongs to a URL if its id starts with the URL's host, byte for byte. So a URL
/// with the host "alpha.test" also gets the cookies of "alpha.test.eu", and a URL with an empty
/// host gets all cookies. They are returned in ascending order of their ids. Nothing expires or is
/// written to disk; domain, path and expiry of RFC 6265 are not supported. Safe to call from
/// several threads; each operation is atomic, sequences of them are not. Throws only if memory runs
/// out.
class QORNETWORKING_EXPORT CookieJar final : public ICookieJar {
public:
    CookieJar();
    ~CookieJar() override;
    CookieJar(CookieJar const&) = delete;
    CookieJar& operator=(CookieJar const&) = delete;

    [[nodiscard]] std::vector<Cookie> cookiesForUrl(Url const& url) const override;
    bool deleteCookie(Cookie const& cookie) override;
    void insertCookie(Cookie const& cookie) override;
    void insertCookie(Cookie&& cookie) override;

private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace Ostrel::Networking
