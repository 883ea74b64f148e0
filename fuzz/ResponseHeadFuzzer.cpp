// Reads any text as the heads of a transfer.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "Networking/Cpr/ResponseHead.h"
#include "fuzz/Require.h"

using Ostrel::Networking::compressionsIn;
using Ostrel::Networking::readResponseHead;
using Ostrel::Networking::ResponseHead;

namespace {

bool isTrimmed(std::string const& text) {
    return text.find_first_of(" \t") != 0 && text.find_last_not_of(" \t\r") + 1 == text.size() &&
           text.find('\n') == std::string::npos;
}

bool areEqual(ResponseHead const& a, ResponseHead const& b) {
    return a.statusLine == b.statusLine && a.reason == b.reason && a.headers == b.headers;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string const text(reinterpret_cast<char const*>(data), size);
    auto const isComplete = size % 2 == 0;
    auto const head = readResponseHead(text, isComplete);
    require(isTrimmed(head.statusLine) && isTrimmed(head.reason), "the status line is trimmed");
    require(head.statusLine.size() >= head.reason.size(), "the reason is part of the status line");
    require(!head.statusLine.empty() || head.headers.empty(), "headers follow a status line");
    auto length = head.statusLine.size();
    for (auto const& [name, value] : head.headers) {
        require(name.find(':') == std::string::npos && isTrimmed(value), "headers are split");
        length += name.size() + value.size() + 2;
    }
    require(length <= size + 1, "nothing is added");

    auto const complete = text + "\r\n\r\n";
    auto const next = readResponseHead(complete + "HTTP/1.1 204 Next\r\nA: b\r\n\r\n", isComplete);
    require(areEqual(next, {"HTTP/1.1 204 Next", "Next", {{"A", "b"}}}),
            "earlier heads have no effect");
    auto const before = readResponseHead(complete, isComplete);
    require(areEqual(before, readResponseHead(complete + "A: b\r\n c\r\nd", isComplete)),
            "trailers have no effect");

    auto const commas = std::count(text.begin(), text.end(), ',');
    require(compressionsIn(text) <= commas + 1, "codings are separated by commas");
    return 0;
}
