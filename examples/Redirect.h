#pragma once

#include <optional>
#include <string>

#include <Networking/Response.h>
#include <Networking/Types.h>

#include "examples/LinkAsGiven.h"

namespace Recipes {

using namespace Ostrel::Networking;

// [snippet]
/// Protocol, host and port.
inline std::string originOf(Url const& url) {
    return url.protocol() + "://" + url.host() + (url.port().empty() ? "" : ":" + url.port());
}

/// The target of the header "Location", which may be relative, of a response from `url`.
inline Url targetOf(Url const& url, std::string const& location) {
    if (location.find(':') < location.find_first_of("/?#")) {
        return linkAsGiven(location);
    }
    if (location.rfind("//", 0) == 0) {
        return linkAsGiven(url.protocol() + ":" + location);
    }
    if (location.rfind('/', 0) == 0) {
        return linkAsGiven(originOf(url) + location);
    }
    auto path = url.path().empty() ? "/" : url.path().substr(0, url.path().find('?'));
    if (location.rfind('?', 0) != 0) {
        path.erase(path.rfind('/') + 1);
    }
    return linkAsGiven(originOf(url) + path + location);
}

/// The request to send after `response`, if that is a redirect which may be followed: it must not
/// leave HTTPS. Headers, cookies and user info are for the same origin only.
inline std::optional<Request> redirected(Request const& request, Response const& response) {
    auto const location = response.headers.find("Location");
    if (response.error.code != ErrorCode::Ok || response.statusCode / 100 != 3 ||
        location == response.headers.end()) {
        return std::nullopt;
    }
    auto target = targetOf(request.url, location->second);
    if (target.protocol() != "https" && target.protocol() != request.url.protocol()) {
        return std::nullopt;
    }
    auto next = originOf(target) == originOf(request.url) ? request : Request();
    target.setUserInfo(next.url.userInfo());
    next.url = target;
    return next;
}
// [/snippet]

}  // namespace Recipes
