#include "Networking/Cpr/ResponseHead.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "Networking/Ascii.h"

namespace Ostrel::Networking {

namespace {

constexpr std::string_view BLANKS = " \t";
constexpr std::string_view DIGITS = "0123456789";
constexpr auto NOWHERE = std::string_view::npos;

/// Removes the first line of `text` and returns it without "\n".
std::string_view takeLine(std::string_view& text) {
    auto const end = std::min(text.find('\n'), text.size());
    auto const line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

std::string_view trimmed(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(BLANKS), text.size()));
    return text.substr(0, text.find_last_not_of(" \t\r\n") + 1);
}

/// The reason in a status line such as "HTTP/1.1 404 Not Found"; nothing for any other line. Like
/// libcurl, accepts any letter case and more than one blank.
std::optional<std::string_view> reasonOf(std::string_view line) {
    if (!equalsIgnoringCase(line.substr(0, 5), "HTTP/")) {
        return std::nullopt;
    }
    auto const versionEnd = line.find_first_not_of("0123456789.", 5);
    auto const code = line.find_first_not_of(BLANKS, versionEnd);
    auto const codeEnd = line.find_first_not_of(DIGITS, code);
    if (versionEnd == 5 || code == NOWHERE || code == codeEnd) {
        return std::nullopt;
    }
    return trimmed(line.substr(std::min(codeEnd, line.size())));
}

/// Adds a header, unless its name is present. Returns its value, to which folded lines are
/// appended; null if they are dropped with the header.
std::string* addHeader(std::string_view line, ResponseHead& head) {
    auto const colon = line.find(':');
    if (colon == NOWHERE) {
        return nullptr;
    }
    auto const [header, isNew] =
        head.headers.emplace(line.substr(0, colon), trimmed(line.substr(colon + 1)));
    return isNew ? &header->second : nullptr;
}

void appendFold(std::string_view line, std::string* value) {
    auto const text = trimmed(line);
    if (value && !text.empty()) {
        value->append(value->empty() ? "" : " ").append(text);
    }
}

}  // namespace

ResponseHead readResponseHead(std::string_view rawHeads, bool isComplete) {
    ResponseHead complete;
    std::optional<ResponseHead> open;
    std::string* foldable = nullptr;
    // A status line begins a head, except inside an open one. After a chunked body it may also be a
    // trailer: what it opens is dropped at the next status line, or at the end if no empty line has
    // completed it. If the transfer failed, one without a colon is taken for a head cut short.
    auto mayBeTrailers = false;
    while (!rawHeads.empty()) {
        auto const line = takeLine(rawHeads);
        auto const reason = !open || mayBeTrailers ? reasonOf(line) : std::nullopt;
        if (reason) {
            open = ResponseHead{std::string(trimmed(line)), std::string(*reason), {}};
            foldable = nullptr;
            mayBeTrailers = complete.headers.count("Transfer-Encoding") > 0 &&
                            (isComplete || line.find(':') != NOWHERE);
        } else if (open && (line.empty() || line.front() == '\r')) {
            complete = *std::exchange(open, std::nullopt);
        } else if (open && BLANKS.find(line.front()) != NOWHERE) {
            appendFold(line, foldable);
        } else if (open) {
            foldable = addHeader(line, *open);
        }
    }
    if (open && !mayBeTrailers) {
        return *std::move(open);  // Cut short, as it has no empty line at its end.
    }
    return complete;
}

int compressionsIn(std::string_view line) {
    auto const colon = line.find(':');
    auto const name = line.substr(0, colon);
    if (colon == NOWHERE || !(equalsIgnoringCase(name, "Content-Encoding") ||
                              equalsIgnoringCase(name, "Transfer-Encoding"))) {
        return 0;
    }
    auto compressions = 0;
    for (auto codings = line.substr(colon + 1); !codings.empty();) {
        auto const end = std::min(codings.find(','), codings.size());
        auto const coding = trimmed(codings.substr(0, end));
        codings.remove_prefix(std::min(end + 1, codings.size()));
        auto const isNone = coding.empty() || equalsIgnoringCase(coding, "chunked") ||
                            equalsIgnoringCase(coding, "identity") ||
                            equalsIgnoringCase(coding, "none");
        compressions += isNone ? 0 : 1;
    }
    return compressions;
}

}  // namespace Ostrel::Networking
