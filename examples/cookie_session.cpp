// Logs in with a form, then fetches a page that needs the login.
// Usage: cookie_session LOGIN_URL PAGE_URL USER PASSWORD

#include <iostream>
#include <memory>
#include <string>

#include <Networking/AddAdapter.h>
#include <Networking/CookieJar/CookieJar.h>
#include <Networking/CreateHttpClient.h>

#include "examples/ExactCookiesAdapter.h"
#include "examples/Printing.h"

using namespace Recipes;

namespace {

// [snippet]
/// All clients with the same jar share the login.
std::unique_ptr<IHttpClient> sessionClient(std::shared_ptr<ICookieJar> const& jar) {
    std::shared_ptr<IHttpClient> const client = createHttpClient(HttpClientType::Cpr);
    return addCookieJarAdapter(std::make_shared<ExactCookiesAdapter>(client), jar);
}

/// Sends the form of a login page. The cookies of the response are in the client's jar afterwards.
Response logIn(IHttpClient& client, Url const& url, std::string const& user,
               std::string const& password) {
    Options options;               // Redirects are not followed: they would repeat the password.
    options.timeout = 10'000'000;  // microseconds
    return client.post({url}, MultiPart{{{"user", user}, {"password", password}}}, options);
}
// [/snippet]

}  // namespace

int main(int argc, char* argv[]) {
    if (argc != 5) {
        std::cerr << "usage: cookie_session LOGIN_URL PAGE_URL USER PASSWORD\n";
        return 2;
    }
    auto const client = sessionClient(std::make_shared<CookieJar>());
    auto const welcome = logIn(*client, Url(argv[1]), argv[3], argv[4]);
    if (welcome.error.code != ErrorCode::Ok || welcome.statusCode >= 400) {
        return report(welcome);
    }
    Options options;
    options.timeout = 10'000'000;
    return report(client->get({Url(argv[2])}, options));
}
