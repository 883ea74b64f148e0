#include <cstddef>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

#include "Networking/CreateHttpClient.h"
#include "benchmarks/Benchmarks.h"
#include "benchmarks/Support/Comparison.h"
#include "benchmarks/Support/Peers.h"

namespace Ostrel::Networking::Benchmarks {

namespace {

constexpr int CALLS_PER_THREAD = 16;

Contestant calling(std::string const& name, int threads, std::function<std::size_t()> const& get) {
    auto const checkedGet = [get](int, int) {
        if (get() != 100) {
            throw std::runtime_error("A body is incomplete");
        }
    };
    return {name, [=] { return timeOnThreads(threads, CALLS_PER_THREAD, checkedGet); }};
}

}  // namespace

void registerGetBenchmarks(std::string const& server) {
    auto const url = server + "100";
    std::shared_ptr<IHttpClient> const client = createHttpClient(HttpClientType::Cpr);
    auto const get = [client, request = requestFor(url), options = standardOptions()] {
        return client->get(request, options).body.size();
    };
    for (auto const threads : {1, 2, 4, 8}) {
        registerComparison("Get/" + std::to_string(threads),
                           {calling("library", threads, get),
                            calling("cpr", threads, [url] { return collectByCpr(url); }),
                            calling("curl", threads, [url] { return collectByCurl(url); })});
    }
}

}  // namespace Ostrel::Networking::Benchmarks
