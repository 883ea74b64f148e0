// Converts any response of libcpr.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>

#include "fuzz/Require.h"

// The conversion is local to its unit, which is therefore part of this one; under another name, as
// the library is linked, too.
#define CprHttpClient FuzzedCprHttpClient
#include "Networking/Cpr/CprHttpClient.cpp"  // NOLINT(bugprone-suspicious-include)

namespace Ostrel::Networking {

namespace {

/// Takes the text up to the next line break off `input`.
std::string takeLine(std::string_view& input) {
    auto const end = input.find('\n');
    std::string line(input.substr(0, end));
    input.remove_prefix(end == std::string_view::npos ? input.size() : end + 1);
    return line;
}

/// The first two bytes are the outcome, the next line is the status, then come lines for headers,
/// which start with "h", and cookies, which start with "c", each with the name up to "=" and the
/// value behind it; the rest is the body.
cpr::Response responseFrom(std::string_view input) {
    cpr::Response response;
    if (input.size() >= 2) {
        response.error.code = static_cast<cpr::ErrorCode>(input[0] * 256 + input[1]);
        input.remove_prefix(2);
    }
    response.status_line = takeLine(input);
    response.status_code = std::strtol(response.status_line.c_str(), nullptr, 10);
    while (!input.empty() && (input[0] == 'h' || input[0] == 'c')) {
        auto const line = takeLine(input);
        auto const equals = std::min(line.find('=', 1), line.size());
        auto const name = line.substr(1, equals - 1);
        auto const value = line.substr(std::min(equals + 1, line.size()));
        if (line[0] == 'h') {
            response.header.emplace(name, value);
        } else {
            response.cookies.push_back(cpr::Cookie(name, value));
        }
    }
    response.text = std::string(input);
    return response;
}

void convert(cpr::Response const& original) {
    auto const response = responsefromCprFormat(cpr::Response(original));
    require(response.body == original.text, "the body is kept");
    require(response.statusLine == original.status_line, "the status line is kept");
    require(response.statusCode == static_cast<std::int32_t>(original.status_code),
            "the status code is kept in its low bits");
    require(response.headers.size() == original.header.size(), "every header is kept");
    for (auto cookie = original.cookies.cbegin(); cookie != original.cookies.cend(); ++cookie) {
        require(response.cookies.count(cookie->GetName()) == 1, "every name of a cookie is kept");
    }
    if (original.cookies.cbegin() != original.cookies.cend()) {
        auto const& first = *original.cookies.cbegin();
        require(response.cookies.at(first.GetName()) == first.GetValue(), "the first value stays");
    }
    require(response.error.code != ErrorCode::NotPerformed, "a transfer was made");
}

}  // namespace

}  // namespace Ostrel::Networking

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    try {
        Ostrel::Networking::convert(Ostrel::Networking::responseFrom(
            std::string_view(reinterpret_cast<char const*>(data), size)));
    } catch (std::runtime_error const& error) {
        require(error.what() == std::string_view("Uknown cpr::ErrorCode provided"),
                "nothing is refused but an unknown outcome");
    }
    return 0;
}
