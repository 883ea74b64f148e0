#pragma once

#include <string>

/// Each of these registers the benchmarks of one subject. `server` is the address below which a
/// body of N bytes is served as N.
namespace Ostrel::Networking::Benchmarks {

void registerAdapterBenchmarks();
void registerBodyBenchmarks(std::string const& server);
void registerCookieJarBenchmarks();
void registerGetBenchmarks(std::string const& server);
void registerStartBenchmarks();
void registerUrlBenchmarks();

}  // namespace Ostrel::Networking::Benchmarks
