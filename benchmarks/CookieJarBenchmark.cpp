#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "Networking/CookieJar/CookieJar.h"
#include "benchmarks/Benchmarks.h"
#include "benchmarks/Support/Comparison.h"

namespace Ostrel::Networking::Benchmarks {

namespace {

constexpr std::size_t COOKIES_OF_A_HOST = 5;
/// Enough to visit every host of the largest jar.
constexpr int LOOKUPS = 20'000;

struct FilledJar {
    explicit FilledJar(std::size_t size) {
        for (std::size_t host = 0; host < size / COOKIES_OF_A_HOST; ++host) {
            hosts.emplace_back("https://www.host" + std::to_string(host) + ".example/index");
            for (std::size_t i = 0; i < COOKIES_OF_A_HOST; ++i) {
                jar.insertCookie({"cookie" + std::to_string(i), "38afes7a8b2c4d6e", hosts.back()});
            }
        }
    }

    CookieJar jar;
    std::vector<Url> hosts;
};

/// Goes through the hosts in leaps, so that a large jar does not answer from the processor's
/// caches. Every thread starts at a host of its own.
double timeOfLookups(FilledJar const& filled, int threads) {
    return timeOnThreads(threads, LOOKUPS / threads, [&filled](int thread, int i) {
        auto const leap = static_cast<std::size_t>(i + thread * 31) * 7919;
        auto const& url = filled.hosts[leap % filled.hosts.size()];
        if (filled.jar.cookiesForUrl(url).size() != COOKIES_OF_A_HOST) {
            throw std::runtime_error("A cookie is missing");
        }
    });
}

}  // namespace

void registerCookieJarBenchmarks() {
    std::vector<std::shared_ptr<FilledJar>> jars;
    for (auto const size : {100'000, 1'000, 10}) {
        jars.push_back(std::make_shared<FilledJar>(size));
    }
    for (auto const threads : {1, 8}) {
        std::vector<Contestant> contestants;
        for (auto const& jar : jars) {
            auto const size = std::to_string(jar->hosts.size() * COOKIES_OF_A_HOST);
            contestants.push_back({size, [=] { return timeOfLookups(*jar, threads); }});
        }
        registerComparison("CookieJar/" + std::to_string(threads), contestants);
    }
}

}  // namespace Ostrel::Networking::Benchmarks
