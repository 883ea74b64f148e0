#include "Networking/Adapters/CookieJarAdapter.h"

#include <map>
#include <string>
#include <vector>

namespace Ostrel::Networking {

namespace {

/// If a name repeats, the first value is kept.
void fillMapWithCookies(std::map<std::string, std::string>& target,
                        std::vector<Cookie> const& cookies) {
    for (auto const& cookie : cookies) {
        target.emplace(cookie.name, cookie.value);
    }
}

void addCookiesToJar(std::map<std::string, std::string> const& cookies, Url const& url,
                     ICookieJar& jar) {
    for (auto const& [name, value] : cookies) {
        jar.insertCookie(Cookie{name, value, url});
    }
}

}  // namespace

CookieJarAdapter::CookieJarAdapter(std::shared_ptr<IHttpClient> const& client,
                                   std::shared_ptr<ICookieJar> const& jar)
    : ClientAdapter(client), jar_(jar) {}

Response CookieJarAdapter::perform(Request const& request, Options const& options,
                                   Operation const& operation) {
    auto const selection = jar_->cookiesForUrl(request.url);
    auto sent = request;
    sent.cookies.clear();
    fillMapWithCookies(sent.cookies, selection);
    auto response = operation(client(), sent, options);
    addCookiesToJar(response.cookies, request.url, *jar_);
    return response;
}

}  // namespace Ostrel::Networking
