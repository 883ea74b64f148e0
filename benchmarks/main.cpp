#include <benchmark/benchmark.h>
#include <cpr/cprver.h>
#include <curl/curl.h>

#include "benchmarks/Benchmarks.h"
#include "benchmarks/Support/LoopbackServer.h"

int main(int argc, char* argv[]) {
    namespace Benchmarks = Ostrel::Networking::Benchmarks;

    Benchmarks::LoopbackServer const server;
    Benchmarks::registerUrlBenchmark();
    Benchmarks::registerTransferBenchmarks(server.url());
    Benchmarks::registerProcessBenchmarks(server.url());
    Benchmarks::registerCookieJarBenchmark();
    benchmark::AddCustomContext("compiler", COMPILER);
    benchmark::AddCustomContext("libcpr", CPR_VERSION);
    benchmark::AddCustomContext("libcurl", curl_version_info(CURLVERSION_NOW)->version);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    return benchmark::RunSpecifiedBenchmarks() > 0 ? 0 : 1;
}
