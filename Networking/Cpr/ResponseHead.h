#pragma once

#include <map>
#include <string>
#include <string_view>

#include "Networking/Types.h"

namespace Ostrel::Networking {

/// Private: not installed. The head of a response. All empty if there was no response.
struct ResponseHead {
    /// As received, without white space at its end.
    std::string statusLine;
    /// The text after the status code; empty if there is none, as in HTTP/2.
    std::string reason;
    /// Name to value, without white space around the value. If a name repeats, the first value is
    /// kept. The lines of a folded value are joined by a space (RFC 9112, section 5.2).
    std::map<std::string, std::string, CaseInsensitiveCompare> headers;
};

/// Reads the head of the last response from `rawHeads`, the heads and trailers of a whole transfer
/// as libcurl delivers them. `isComplete` tells that the transfer succeeded, so that no head is cut
/// short.
///
/// Ignores trailers and all responses before the last, which is an interim one only if no other
/// follows. Takes one pass without recursion, apart from the ordering of the headers by name.
/// Throws only if memory runs out.
[[nodiscard]] ResponseHead readResponseHead(std::string_view rawHeads, bool isComplete);

/// Returns how many compressions a line of a head announces: the codings of "Content-Encoding" and
/// "Transfer-Encoding" (RFC 9110, section 8.4; RFC 9112, section 6.1) but "chunked", "identity" and
/// "none".
[[nodiscard]] int compressionsIn(std::string_view line);

}  // namespace Ostrel::Networking
