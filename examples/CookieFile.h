#pragma once

#include <filesystem>
#include <fstream>
#include <iomanip>
#include <string>
#include <system_error>
#include <vector>

#include <Networking/CookieJar/ICookieJar.h>

namespace Recipes {

using namespace Ostrel::Networking;

// [snippet]
/// Reads cookies up to the first line that is not one. Returns none if there is no such file.
inline std::vector<Cookie> readCookies(std::string const& file) {
    std::vector<Cookie> cookies;
    std::ifstream in(file, std::ios::binary);
    std::string host;
    Cookie cookie;
    while (in >> std::quoted(host) >> std::quoted(cookie.name) >> std::quoted(cookie.value)) {
        cookie.url.setHost(host);  // A jar uses nothing else of the URL.
        cookies.push_back(cookie);
    }
    return cookies;
}

/// On failure, for instance on a full disk, the old file is kept.
inline void writeCookies(std::string const& file, std::vector<Cookie> const& cookies) {
    auto const partial = file + ".part";
    std::ofstream out(partial, std::ios::binary);
    std::error_code error;
    std::filesystem::permissions(partial, std::filesystem::perms(0600), error);
    for (auto const& [name, value, url] : cookies) {
        out << std::quoted(url.host()) << std::quoted(name) << std::quoted(value) << '\n';
    }
    out.close();
    if (out && !error) {
        std::filesystem::rename(partial, file, error);  // Replaces the old file in one step.
    }
}
// [/snippet]

}  // namespace Recipes
