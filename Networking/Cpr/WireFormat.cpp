#include "Networking/Cpr/WireFormat.h"

#include <string_view>

namespace Ostrel::Networking {

namespace {

using namespace std::string_view_literals;

constexpr auto NUL_OR_LINE_BREAK = "\0\r\n"sv;
constexpr auto NOT_IN_HEADER_NAME = "\0\r\n: "sv;

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

/// Why `text`, which is the `field` of `owner`, is refused; empty if it holds none of `unwanted`.
std::string refusalOfText(std::string_view field, std::string_view owner, std::string_view text,
                          std::string_view unwanted) {
    auto const at = text.find_first_of(unwanted);
    return at == std::string_view::npos
               ? std::string()
               : std::string(field).append(owner).append(reasonOf(text[at]));
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
    auto const refusal = refusalOfText("header name", "", name, NOT_IN_HEADER_NAME);
    return !refusal.empty() ? refusal
                            : refusalOfText("value of header ", name, value, NUL_OR_LINE_BREAK);
}

/// libcpr sends a value in double quotes as it is, and all others percent-encoded.
std::string refusalOfCookie(std::string const& name, std::string const& value) {
    auto const isSentAsIs = !value.empty() && value.front() == '"' && value.back() == '"';
    return isSentAsIs ? refusalOfText("value of cookie ", name, value, NUL_OR_LINE_BREAK)
                      : std::string();
}

std::string refusalOfPart(MultiPart::Part const& part) {
    if (auto refusal = refusalOfText("part name", "", part.name, NUL_OR_LINE_BREAK);
        !refusal.empty()) {
        return refusal;
    }
    auto const refusal =
        refusalOfText("content type of part ", part.name, part.contentType, NUL_OR_LINE_BREAK);
    return !refusal.empty() ? refusal : refusalOfNul("value of part ", part.name, part.value);
}

}  // namespace

Url urlForSession(Url url) {
    url.setParameters({});
    url.setAnchor({});
    return url;
}

std::string refusalOf(Request const& request, Options const& options) {
    if (auto refusal = refusalOfNul("URL", "", urlForSession(request.url).toString());
        !refusal.empty()) {
        return refusal;
    }
    for (auto const& [name, value] : request.headers) {
        if (auto refusal = refusalOfHeader(name, value); !refusal.empty()) {
            return refusal;
        }
    }
    for (auto const& [name, value] : request.cookies) {
        if (auto refusal = refusalOfCookie(name, value); !refusal.empty()) {
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
