#pragma once

#include <cstddef>
#include <string>

/// One GET, written for the library, libcpr and libcurl, with the same headers, cookies, time
/// limit, redirects and progress callback. Each call uses a session and a connection of its own and
/// returns the size of the body. Throws `std::runtime_error` if the transfer fails.
namespace Ostrel::Networking::Benchmarks {

/// In bytes. Not a power of two, where the peak memory depends on how long the head is.
inline constexpr char const* BODY_SIZE = "52428800";

using Fetch = std::size_t (*)(std::string const& url);

[[nodiscard]] std::size_t collectByLibrary(std::string const& url);
[[nodiscard]] std::size_t collectByCpr(std::string const& url);
[[nodiscard]] std::size_t collectByCurl(std::string const& url);

/// These two receive the body piece by piece.
[[nodiscard]] std::size_t streamByLibrary(std::string const& url);
[[nodiscard]] std::size_t streamByCpr(std::string const& url);

}  // namespace Ostrel::Networking::Benchmarks
