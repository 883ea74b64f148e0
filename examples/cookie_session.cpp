// Logs in with a form, then fetches a page that needs the login.
// Usage: cookie_session LOGIN_URL PAGE_URL

#include <iostream>
#include <memory>

#include <Networking/AddAdapter.h>
#include <Networking/CookieJar/CookieJar.h>
#include <Networking/CreateHttpClient.h>

using namespace Ostrel::Networking;

int main(int argc, char* argv[]) {
    if (argc != 3) {
        std::cerr << "usage: cookie_session LOGIN_URL PAGE_URL\n";
        return 2;
    }
    // [snippet]
    // The application can inspect the jar and share it with other clients.
    auto const jar = std::make_shared<CookieJar>();
    auto const client = addCookieJarAdapter(createHttpClient(HttpClientType::Cpr), jar);
    Options options;
    options.timeout = 10'000'000;  // microseconds

    Request login;
    login.url = Url(argv[1]);
    MultiPart const form{{{"user", "ada"}, {"password", "secret"}}};
    auto const welcome = client->post(login, form, options);
    if (welcome.error.code != ErrorCode::Ok || welcome.statusCode != 200) {
        std::cerr << "login failed: " << welcome.statusLine << welcome.error.message << '\n';
        return 1;
    }
    std::cout << "cookies stored: " << jar->cookiesForUrl(login.url).size() << '\n';

    Request page;
    page.url = Url(argv[2]);
    std::cout << client->get(page, options).body << '\n';
    // [/snippet]
}
