#pragma once

#include <string>
#include <vector>

#include "Networking/Export.h"
#include "Networking/Url.h"

namespace Ostrel::Networking {

/// A cookie and the URL that it came from.
struct Cookie {
    /// As the server wrote it; goes out percent-encoded.
    std::string name;
    /// As the server wrote it; goes out percent-encoded, unless it stands in double quotes.
    std::string value;
    /// Of the request that brought it. Only the host counts.
    Url url;
};

/// A store of cookies, shared by clients and threads. Implementations must be safe to call from
/// several threads.
class QORNETWORKING_EXPORT ICookieJar {
public:
    virtual ~ICookieJar() = default;

    /// Copies of the cookies that belong to `url`.
    [[nodiscard]] virtual std::vector<Cookie> cookiesForUrl(Url const& url) const = 0;

    /// Removes the cookie of that name and host, whatever its value; gives whether there was one.
    virtual bool deleteCookie(Cookie const& cookie) = 0;

    /// Stores a cookie in place of the one of that name and host.
    virtual void insertCookie(Cookie const& cookie) = 0;
    /// The same, taking over the contents of `cookie`.
    virtual void insertCookie(Cookie&& cookie) = 0;
};

}  // namespace Ostrel::Networking
