#pragma once

#include <string>

/// Each function registers the benchmarks of one subject. `server` is the address of a
/// `LoopbackServer`.
namespace Ostrel::Networking::Benchmarks {

void registerCookieJarBenchmark();
void registerProcessBenchmarks(std::string const& server);
void registerTransferBenchmarks(std::string const& server);
void registerUrlBenchmark();

}  // namespace Ostrel::Networking::Benchmarks
