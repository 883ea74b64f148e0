#include "Networking/Cpr/WireFormat.h"

#include <algorithm>
#include <string_view>

namespace Ostrel::Networking {

namespace {

constexpr bool isNulOrLineBreak(char c) { return c == '\0' || c == '\r' || c == '\n'; }
constexpr bool isUnfitForHeaderName(char c) { return isNulOrLineBreak(c) || c == ':' || c == ' '; }

std::string reasonOf(char c) {
    switch (c) {
        case '\0':
            return " contains NUL";
        case ':':
            return " contains a colon";
        case ' ':
            return " contains a space";
        default:
            return " contains a line break";
    }
}

/// Why `text`, the `field` of `owner`, is refused; empty if it is not.
template <typename Predicate>
std::string refusalOfText(std::string_view field, std::string_view owner, std::string_view text,
                          Predicate isUnfit) {
    auto const found = std::find_if(text.begin(), text.end(), isUnfit);
    return found == text.end() ? std::string()
                               : std::string(field).append(owner).append(reasonOf(*found));
}

std::string refusalOfNul(std::string_view field, std::string_view owner, std::string_view text) {
    return text.find('\0') == std::string_view::npos
               ? std::string()
               : std::string(field).append(owner).append(reasonOf('\0'));
}

std::string refusalOfHeader(std::string const& name, std::string const& value) {
    if (name.empty()) {
        return "header name is empty";
    }
    auto const refusal = refusalOfText("header name", "", name, isUnfitForHeaderName);
    return !refusal.empty() ? refusal
                            : refusalOfText("value of header ", name, value, isNulOrLineBreak);
}

/// libcpr sends a value in double quotes unchanged and percent-encodes all others.
std::string refusalOfCookie(std::string const& name, std::string const& value) {
    auto const isSentAsIs = !value.empty() && value.front() == '"' && value.back() == '"';
    return isSentAsIs ? refusalOfText("value of cookie ", name, value, isNulOrLineBreak)
                      : std::string();
}

std::string refusalOfPart(MultiPart::Part const& part) {
    if (auto refusal = refusalOfText("part name", "", part.name, isNulOrLineBreak);
        !refusal.empty()) {
        return refusal;
    }
    auto const refusal =
        refusalOfText("content type of part ", part.name, part.contentType, isNulOrLineBreak);
    return !refusal.empty() ? refusal : refusalOfNul("value of part ", part.name, part.value);
}

}  // namespace

Url urlForSession(Url url) {
    url.setParameters({});
    url.setAnchor({});
    return url;
}

std::string refusalOf(Request const& request, Options const& options) {
    // NUL is allowed in parameters and anchor, so a text that contains it is checked without them.
    auto refusal = refusalOfNul("URL", "", request.url.toString());
    if (!refusal.empty()) {
        refusal = refusalOfNul("URL", "", urlForSession(request.url).toString());
    }
    if (!refusal.empty()) {
        return refusal;
    }
    for (auto const& [name, value] : request.headers) {
        if (refusal = refusalOfHeader(name, value); !refusal.empty()) {
            return refusal;
        }
    }
    for (auto const& [name, value] : request.cookies) {
        if (refusal = refusalOfCookie(name, value); !refusal.empty()) {
            return refusal;
        }
    }
    return refusalOfNul("proxy", "", options.proxy);
}

std::string refusalOf(MultiPart const& multiPart) {
    for (auto const& part : multiPart.parts) {
        if (auto refusal = refusalOfPart(part); !refusal.empty()) {
            return refusal;
        }
    }
    return {};
}

}  // namespace Ostrel::Networking
