#pragma once

#include <string>
#include <vector>

#include "Networking/Export.h"
#include "Networking/Url.h"

namespace Ostrel::Networking {

/// A cookie and the URL that it belongs to.
struct Cookie {
    /// As the server sent it; `Request::cookies` tells how it is sent back.
    std::string name;
    /// As the server sent it.
    std::string value;
    /// URL of the request whose response set the cookie.
    Url url;
};

/// A store of cookies, shared by clients and threads. The implementation decides which cookies
/// belong to a URL and which count as the same. It must be safe to call from several threads.
class QORNETWORKING_EXPORT ICookieJar {
public:
    virtual ~ICookieJar() = default;

    /// Returns copies of the cookies that belong to `url`.
    [[nodiscard]] virtual std::vector<Cookie> cookiesForUrl(Url const& url) const = 0;

    /// Removes the stored cookie that counts as the same. Returns false if there was none.
    virtual bool deleteCookie(Cookie const& cookie) = 0;

    /// Stores a copy of `cookie` in place of the stored cookie that counts as the same.
    virtual void insertCookie(Cookie const& cookie) = 0;
    /// As above, but moves the contents of `cookie`.
    virtual void insertCookie(Cookie&& cookie) = 0;
};

}  // namespace Ostrel::Networking
