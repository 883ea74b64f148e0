#include "Networking/Cpr/WireFormat.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "Networking/Ascii.h"

namespace Ostrel::Networking {

namespace {

/// In bytes: a text, or the head of a request as it is sent. libcurl sends no longer head, and
/// libcpr ignores that libcurl refuses an option of more than 8,000,000 bytes.
constexpr std::size_t TOO_LONG = 1 << 20;

/// In bytes: what libcurl adds to a head, such as method, version and default headers. An estimate.
constexpr std::size_t ADDED_LENGTH = 1024;

constexpr auto NOWHERE = std::string_view::npos;

constexpr bool isNothing(char) { return false; }
constexpr bool isNul(char c) { return c == '\0'; }
constexpr bool isNulOrLineBreak(char c) { return c == '\0' || c == '\r' || c == '\n'; }
/// libcurl drops a header whose value consists of these.
constexpr std::string_view BLANKS = " \t\v\f";

/// The length of `text` when it is percent-encoded (RFC 3986, section 2.1).
std::size_t encodedLength(std::string_view text) {
    auto const isEncoded = [](char c) {
        return !isAlphanumeric(c) && std::string_view("-._~").find(c) == NOWHERE;
    };
    auto const count = std::count_if(text.begin(), text.end(), isEncoded);
    return text.size() + 2 * static_cast<std::size_t>(count);
}

/// Whether `text` is a token (RFC 9110, section 5.6.2).
bool isToken(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
        return isAlphanumeric(c) || std::string_view("!#$%&'*+-.^_`|~").find(c) != NOWHERE;
    });
}

/// Why `text`, the `field` of `owner`, is refused; empty if it is not.
template <typename Predicate>
std::string refusalOfText(std::string_view field, std::string_view owner, std::string_view text,
                          Predicate isUnfit) {
    auto const because = [&](std::string_view reason) {
        return std::string(field).append(owner).append(reason);
    };
    if (text.size() >= TOO_LONG) {
        return because(" is too long");
    }
    auto const found = std::find_if(text.begin(), text.end(), isUnfit);
    if (found == text.end()) {
        return {};
    }
    return because(*found == '\0' ? " contains NUL" : " contains a line break");
}

std::string refusalOfHeader(std::string const& name, std::string const& value) {
    if (auto refusal = refusalOfText("header name", "", name, isNothing); !refusal.empty()) {
        return refusal;
    }
    if (!isToken(name)) {
        return "header name is not a token";
    }
    if (!value.empty() && value.find_first_not_of(BLANKS) == NOWHERE) {
        return "value of header " + name + " is blank";
    }
    return refusalOfText("value of header ", name, value, isNulOrLineBreak);
}

/// libcpr sends such a cookie value unchanged and percent-encodes all others.
bool isQuoted(std::string_view value) {
    return !value.empty() && value.front() == '"' && value.back() == '"';
}

std::string refusalOfCookie(std::string const& name, std::string const& value) {
    if (auto refusal = refusalOfText("cookie name", "", name, isNothing); !refusal.empty()) {
        return refusal;
    }
    return isQuoted(value) ? refusalOfText("value of cookie ", name, value, isNulOrLineBreak)
                           : refusalOfText("value of cookie ", name, value, isNothing);
}

std::string refusalOfParameter(std::string const& name, std::string const& value) {
    auto const refusal = refusalOfText("parameter name", "", name, isNothing);
    return !refusal.empty() ? refusal
                            : refusalOfText("value of parameter ", name, value, isNothing);
}

std::string refusalOfPart(MultiPart::Part const& part) {
    if (auto refusal = refusalOfText("part name", "", part.name, isNulOrLineBreak);
        !refusal.empty()) {
        return refusal;
    }
    if (part.value.find('\0') != NOWHERE) {
        return "value of part " + part.name + " contains NUL";
    }
    return refusalOfText("content type of part ", part.name, part.contentType, isNulOrLineBreak);
}

}  // namespace

Url urlForSession(Url url) {
    url.setParameters({});
    url.setAnchor({});
    return url;
}

std::string refusalOf(Request const& request, MultiPart const& form, Options const& options) {
    auto const url = urlForSession(request.url).toString();
    if (auto refusal = refusalOfText("URL", "", url, isNul); !refusal.empty()) {
        return refusal;
    }
    auto size = url.size() + ADDED_LENGTH;
    for (auto const& [name, value] : request.url.parameters()) {
        if (auto refusal = refusalOfParameter(name, value); !refusal.empty()) {
            return refusal;
        }
        size += encodedLength(name) + encodedLength(value) + 2;
    }
    for (auto const& [name, value] : request.headers) {
        if (auto refusal = refusalOfHeader(name, value); !refusal.empty()) {
            return refusal;
        }
        size += name.size() + value.size() + 4;
    }
    for (auto const& [name, value] : request.cookies) {
        if (auto refusal = refusalOfCookie(name, value); !refusal.empty()) {
            return refusal;
        }
        size += encodedLength(name) + (isQuoted(value) ? value.size() : encodedLength(value)) + 3;
    }
    if (size >= TOO_LONG) {
        return "request head is too long";
    }
    for (auto const& part : form.parts) {
        if (auto refusal = refusalOfPart(part); !refusal.empty()) {
            return refusal;
        }
    }
    return refusalOfText("proxy", "", options.proxy, isNul);
}

}  // namespace Ostrel::Networking
