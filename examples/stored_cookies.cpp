// Fetches a URL with the cookies of earlier runs, which are kept in a file.
// Usage: stored_cookies URL FILE

#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <stdexcept>

#include <Networking/AddAdapter.h>
#include <Networking/CookieJar/CookieJar.h>
#include <Networking/CreateHttpClient.h>

using namespace Ostrel::Networking;

// [snippet]
static void load(CookieJar& jar, std::filesystem::path const& file) {
    std::ifstream in(file, std::ios::binary);
    std::size_t count = 0;
    in >> count;
    for (std::string host; in && count > 0; --count) {
        Cookie cookie;
        in >> std::quoted(host) >> std::quoted(cookie.name) >> std::quoted(cookie.value);
        cookie.url.setHost(host);
        jar.insertCookie(cookie);
    }
    if (!in && std::filesystem::exists(file)) {
        throw std::runtime_error("not a complete file of cookies: " + file.string());
    }
}

static void save(CookieJar const& jar, std::filesystem::path const& file) {
    auto const partial = file.string() + ".part";
    std::ofstream out(partial, std::ios::binary);
    std::filesystem::permissions(partial, std::filesystem::perms(0600));  // For the user alone.
    out.exceptions(std::ios::failbit | std::ios::badbit);                 // A full disk throws.
    auto const cookies = jar.cookiesForUrl(Url());  // An empty host selects all cookies.
    out << std::to_string(cookies.size());
    for (auto const& [name, value, url] : cookies) {
        out << '\n' << std::quoted(url.host()) << std::quoted(name) << std::quoted(value);
    }
    out.close();
    std::filesystem::rename(partial, file);  // Replaces an older file in one step.
}
// [/snippet]

int main(int argc, char* argv[]) {
    if (argc != 3) {
        std::cerr << "usage: stored_cookies URL FILE\n";
        return 2;
    }
    // [snippet]
    auto const jar = std::make_shared<CookieJar>();
    load(*jar, argv[2]);
    auto const client = addCookieJarAdapter(createHttpClient(HttpClientType::Cpr), jar);
    std::cout << client->get({Url(argv[1]), {}, {}}, {}).body;
    save(*jar, argv[2]);
    // [/snippet]
}
