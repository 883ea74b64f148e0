#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "Networking/AddAdapter.h"
#include "Networking/CreateHttpClient.h"
#include "benchmarks/Benchmarks.h"
#include "benchmarks/Support/Comparison.h"
#include "benchmarks/Support/Peers.h"

namespace Ostrel::Networking::Benchmarks {

namespace {

constexpr int CALLS = 2000;

using Client = std::shared_ptr<IHttpClient>;

struct Adapter {
    char const* name;
    Client (*add)(Client const&);
};

/// All adapters, in the order in which the chain of all wraps them.
constexpr Adapter ADAPTERS[] = {
    {"CookieJar", [](Client const& inner) -> Client { return addCookieJarAdapter(inner, {}); }},
    {"Retries", [](Client const& inner) -> Client { return addRetriesAdapter(inner, {Retry{}}); }},
    {"ForceProtocol",
     [](Client const& inner) -> Client {
         return addForceProtocolAdapter(inner, ForceProtocolSettings::Https);
     }},
    {"SystemProxy", [](Client const& inner) -> Client { return addSystemProxyAdapter(inner); }},
};

Contestant calling(std::string const& name, Client const& client) {
    auto const call = [client, request = requestFor("http://www.example.com:8080/path?q=1"),
                       options = standardOptions()] {
        benchmark::DoNotOptimize(client->get(request, options));
    };
    return {name, [call] { return timeOf(CALLS, call); }};
}

}  // namespace

void registerAdapterBenchmarks() {
    Client const stub = createHttpClient(HttpClientType::Stub);
    std::vector<Contestant> contestants{calling("none", stub)};
    auto chain = stub;
    for (auto const& adapter : ADAPTERS) {
        contestants.push_back(calling(adapter.name, adapter.add(stub)));
        chain = adapter.add(chain);
    }
    contestants.push_back(calling("all", chain));
    registerComparison("Adapter", contestants);
}

}  // namespace Ostrel::Networking::Benchmarks
