#pragma once

#include <cstddef>
#include <string>

/// One GET, written for the library, libcpr and libcurl, with the same headers, cookies, time
/// limit, redirects and progress callback. Each call uses its own session and connection and
/// returns the size of the body. Throws `std::runtime_error` if the transfer fails.
namespace Ostrel::Networking::Benchmarks {

/// In bytes. Not a power of two, because the peak memory would depend on the length of the head.
inline constexpr char const* BODY_SIZE = "52428800";

using Fetch = std::size_t (*)(std::string const& url);

[[nodiscard]] std::size_t collectByLibrary(std::string const& url);
[[nodiscard]] std::size_t collectByCpr(std::string const& url);
[[nodiscard]] std::size_t collectByCurl(std::string const& url);

/// These two receive the body piece by piece.
[[nodiscard]] std::size_t streamByLibrary(std::string const& url);
[[nodiscard]] std::size_t streamByCpr(std::string const& url);

}  // namespace Ostrel::Networking::Benchmarks
