#pragma once

#include <memory>
#include <vector>

#include "Networking/CookieJar/ICookieJar.h"
#include "Networking/Export.h"

namespace Ostrel::Networking {

/// Stores cookies in memory, one for each id, which is a host directly followed by a name. Nothing
/// expires or is written to disk; domain, path and expiry of RFC 6265 are not known here. A cookie
/// belongs to a URL if its id starts with the URL's host, byte for byte. So a URL of "alpha.test"
/// gets the cookies of "alpha.test.eu", too, and one with an empty host gets all. They come in
/// ascending order of their ids. Safe to call from several threads; each operation is atomic,
/// sequences of them are not. Throws only if memory runs out.
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
