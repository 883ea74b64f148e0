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

Contestant lookingUp(std::size_t size) {
    auto const filled = std::make_shared<FilledJar>(size);
    // Visits the hosts in steps, so that a large jar is not read from the caches of the processor.
    auto const lookUp = [filled, leap = std::size_t{0}]() mutable {
        leap += 7919;
        auto const& url = filled->hosts[leap % filled->hosts.size()];
        if (filled->jar.cookiesForUrl(url).size() != COOKIES_OF_A_HOST) {
            throw std::runtime_error("A cookie is missing");
        }
    };
    return {std::to_string(size), [lookUp] { return timeOf(LOOKUPS, lookUp); }};
}

}  // namespace

void registerCookieJarBenchmark() {
    registerComparison("CookieJar", {lookingUp(100'000), lookingUp(10)});
}

}  // namespace Ostrel::Networking::Benchmarks
