#pragma once

#include <memory>
#include <vector>

#include "Networking/CookieJar/ICookieJar.h"
#include "Networking/Export.h"

namespace Ostrel::Networking {

/// Stores cookies in memory. Nothing expires or is written to disk; domain, path and expiry (RFC
/// 6265) are not supported.
///
/// A cookie's id is the host of its URL directly followed by its name; a cookie replaces the one
/// with the same id. A URL gets the cookies whose ids start with its host, byte for byte, in
/// ascending order: "alpha.test" also gets those of "alpha.test.eu", and an empty host gets all.
///
/// Safe to call from several threads; each operation is atomic, sequences of them are not. Throws
/// only if memory runs out, and then changes nothing.
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
