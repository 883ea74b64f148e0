#pragma once

#include <algorithm>
#include <string_view>

/// Private: not installed. Classes of ASCII characters, independent of the locale, unlike the
/// functions of the C library.
namespace Ostrel::Networking {

constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool isUpper(char c) { return c >= 'A' && c <= 'Z'; }
constexpr char toLower(char c) { return isUpper(c) ? static_cast<char>(c - 'A' + 'a') : c; }
constexpr bool isAlphanumeric(char c) {
    return isDigit(c) || (toLower(c) >= 'a' && toLower(c) <= 'z');
}

inline bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return toLower(x) == toLower(y); });
}

}  // namespace Ostrel::Networking
