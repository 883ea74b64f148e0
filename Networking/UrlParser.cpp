#include "Networking/UrlParser.h"

#include <algorithm>
#include <cstddef>

#include "Networking/Ascii.h"

namespace Ostrel::Networking {

namespace {

constexpr bool isWord(char c) { return isAlphanumeric(c) || c == '_'; }
constexpr bool isItemSeparator(char c) { return c == '?' || c == '&' || c == ';'; }
constexpr bool isRunEnd(char c) { return c == ':' || c == '/' || c == '?'; }

template <typename Predicate>
std::size_t skipWhile(std::string_view text, std::size_t from, Predicate predicate) {
    while (from < text.size() && predicate(text[from])) {
        ++from;
    }
    return from;
}

/// The end of the characters that user, password and host may have.
std::size_t skipRun(std::string_view text, std::size_t from) {
    return skipWhile(text, from, [](char c) { return !isRunEnd(c); });
}

/// Removes the protocol and "://" from `rest`.
bool takeProtocol(std::string_view& rest, UrlComponents& url) {
    auto const end = skipWhile(rest, 0, isWord);
    if (end == 0 || rest.substr(end, 3) != "://") {
        return false;
    }
    url.protocol = rest.substr(0, end);
    rest.remove_prefix(end + 3);
    return true;
}

/// Removes the anchor from the end of `rest`. No other component may contain "#", so the first one
/// starts the anchor.
bool takeAnchor(std::string_view& rest, UrlComponents& url) {
    auto const hash = rest.find('#');
    if (hash == std::string_view::npos) {
        return true;
    }
    url.anchor = rest.substr(hash + 1);
    rest = rest.substr(0, hash);
    return url.anchor.find_first_of("#:/?") == std::string_view::npos;
}

/// The text after a user info: host, port, path and query. What does not depend on where the host
/// starts is found in one pass over the text, so that trying every "@" takes linear time.
class Tail {
public:
    explicit Tail(std::string_view text)
        : text_(text), queryStart_(findQueryStart(text)), questionMark_(text.find('?')) {}

    /// Returns the end of the longest host in the run of host characters from `runStart` to
    /// `runEnd` after which the rest matches; `npos` if there is none.
    [[nodiscard]] std::size_t hostEnd(std::size_t runStart, std::size_t runEnd) const {
        if (canFollowHost(runEnd)) {
            return runEnd;
        }
        // A shorter host is followed by a query item, the last one that starts in the run.
        for (auto i = runEnd; i > std::max(runStart, queryStart_); --i) {
            if (isItemSeparator(text_[i - 1])) {
                return i - 1;
            }
        }
        return std::string_view::npos;
    }

    /// Splits what follows a host that ends at `from`, a result of `hostEnd`.
    void split(std::size_t from, UrlComponents& url) const {
        auto const afterPort = portEnd(from);
        auto const query = pathEnd(afterPort);
        url.port = text_.substr(from, afterPort - from);
        if (!url.port.empty()) {
            url.port.remove_prefix(1);
        }
        url.path = text_.substr(afterPort, query - afterPort);
        url.query = text_.substr(query);
    }

private:
    /// The earliest position from which well-formed items reach up to the end. Items start with a
    /// separator and contain no other, so every separator after that position also starts
    /// well-formed items, and none before it does. An item has one "=", not directly after its
    /// separator, as its name is not empty.
    static std::size_t findQueryStart(std::string_view text) {
        auto start = text.size();
        std::size_t equalSigns = 0;
        for (auto i = text.size(); i > 0; --i) {
            auto const c = text[i - 1];
            if (c == '/') {
                break;
            }
            if (c == '=') {
                ++equalSigns;
            } else if (isItemSeparator(c)) {
                if (equalSigns != 1 || text[i] == '=') {
                    break;
                }
                start = i - 1;
                equalSigns = 0;
            }
        }
        return start;
    }

    [[nodiscard]] bool canFollowHost(std::size_t from) const {
        auto const query = pathEnd(portEnd(from));
        return query == text_.size() || (isItemSeparator(text_[query]) && query >= queryStart_);
    }

    /// The position after ":" and digits; `from` if there are none.
    [[nodiscard]] std::size_t portEnd(std::size_t from) const {
        if (from == text_.size() || text_[from] != ':') {
            return from;
        }
        auto const end = skipWhile(text_, from + 1, isDigit);
        return end == from + 1 ? from : end;
    }

    /// A path reaches up to the first "?". A shorter path is no alternative: if the items from "?"
    /// on do not match, those from an earlier separator do not match either.
    [[nodiscard]] std::size_t pathEnd(std::size_t from) const {
        if (from == text_.size() || text_[from] != '/') {
            return from;
        }
        return std::min(questionMark_, text_.size());
    }

    std::string_view text_;
    std::size_t queryStart_;
    std::size_t questionMark_;
};

constexpr bool isHost(std::string_view text) { return text.size() >= 2 && isWord(text.front()); }

/// The last "@" at or after `from` that is followed by a host that ends at `hostEnd`; `npos` if
/// there is none.
std::size_t findAt(std::string_view text, std::size_t from, std::size_t hostEnd) {
    if (hostEnd != std::string_view::npos) {
        for (auto i = hostEnd; i > from; --i) {
            if (text[i - 1] == '@' && isHost(text.substr(i, hostEnd - i))) {
                return i - 1;
            }
        }
    }
    return std::string_view::npos;
}

}  // namespace

std::optional<UrlComponents> parseUrl(std::string_view text) noexcept {
    UrlComponents url;
    if (!takeProtocol(text, url) || !takeAnchor(text, url)) {
        return std::nullopt;
    }
    Tail const tail(text);
    auto const finish = [&](std::size_t hostStart, std::size_t hostEnd) {
        url.host = text.substr(hostStart, hostEnd - hostStart);
        tail.split(hostEnd, url);
        return url;
    };

    // The pattern prefers the longest user and the last "@". So the order is: an "@" in the
    // password, which is the run after the first ":", then an "@" in the first run, then no user
    // info.
    auto const firstEnd = skipRun(text, 0);
    if (firstEnd > 0 && text.substr(firstEnd, 1) == ":") {
        auto const password = firstEnd + 1;
        auto const end = tail.hostEnd(password, skipRun(text, password));
        auto const at = findAt(text, password, end);
        if (at != std::string_view::npos) {
            url.user = text.substr(0, firstEnd);
            url.password = text.substr(password, at - password);
            return finish(at + 1, end);
        }
    }
    auto const end = tail.hostEnd(0, firstEnd);
    auto const at = findAt(text, 1, end);
    if (at != std::string_view::npos) {
        url.user = text.substr(0, at);
        return finish(at + 1, end);
    }
    if (end == std::string_view::npos || !isHost(text.substr(0, end))) {
        return std::nullopt;
    }
    return finish(0, end);
}

QueryItem takeQueryItem(std::string_view& query) noexcept {
    auto const equals = query.find('=');
    auto const end = skipWhile(query, equals, [](char c) { return !isItemSeparator(c); });
    QueryItem const item{query.substr(1, equals - 1), query.substr(equals + 1, end - equals - 1)};
    query.remove_prefix(end);
    return item;
}

}  // namespace Ostrel::Networking
