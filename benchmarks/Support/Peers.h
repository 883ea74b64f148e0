#pragma once

#include <cstddef>
#include <string>

#include "Networking/Types.h"

/// One GET, written for the library and for its peers, with the same headers, cookies, time limit,
/// redirects and progress callback, in a session and on a connection of its own.
namespace Ostrel::Networking::Benchmarks {

[[nodiscard]] Request requestFor(std::string const& url);
[[nodiscard]] Options standardOptions();

/// By plain libcpr. Gives the size of the body, which is collected.
[[nodiscard]] std::size_t collectByCpr(std::string const& url);
/// By plain libcpr. Gives the size of the body, which is taken piece by piece.
[[nodiscard]] std::size_t streamByCpr(std::string const& url);
/// By plain libcurl. Gives the size of the body, which is collected, as are the headers.
[[nodiscard]] std::size_t collectByCurl(std::string const& url);

}  // namespace Ostrel::Networking::Benchmarks
