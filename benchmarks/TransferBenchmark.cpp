#include <stdexcept>
#include <string>

#include "benchmarks/Benchmarks.h"
#include "benchmarks/Support/Comparison.h"
#include "benchmarks/Support/Fetch.h"

namespace Ostrel::Networking::Benchmarks {

void registerTransferBenchmarks(std::string const& server) {
    auto const fetching = [&server](Fetch fetch, std::string const& size, int calls, int threads) {
        auto const call = [fetch, url = server + size, expected = std::stoul(size)] {
            if (fetch(url) != expected) {
                throw std::runtime_error("A body is incomplete");
            }
        };
        return [=] { return timeOf(calls, call, threads); };
    };
    for (auto const threads : {1, 8}) {
        registerComparison("Get/" + std::to_string(threads),
                           {{"library", fetching(collectByLibrary, "100", 16, threads)},
                            {"cpr", fetching(collectByCpr, "100", 16, threads)},
                            {"curl", fetching(collectByCurl, "100", 16, threads)}});
    }
    registerComparison("Body/collected", {{"library", fetching(collectByLibrary, BODY_SIZE, 1, 1)},
                                          {"cpr", fetching(collectByCpr, BODY_SIZE, 1, 1)}});
    registerComparison("Body/streamed", {{"library", fetching(streamByLibrary, BODY_SIZE, 1, 1)},
                                         {"cpr", fetching(streamByCpr, BODY_SIZE, 1, 1)}});
}

}  // namespace Ostrel::Networking::Benchmarks
