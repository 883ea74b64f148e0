#pragma once

#include <algorithm>
#include <chrono>
#include <memory>
#include <random>
#include <thread>

#include <Networking/Adapters/ClientAdapter.h>

#include "examples/RetryAfter.h"

namespace Recipes {

using namespace Ostrel::Networking;

// [snippet]
/// Repeats calls that reached no server or that the server puts off, after pauses that grow.
class TryAgainAdapter final : public ClientAdapter {
public:
    using Time = std::chrono::milliseconds;
    /// The first pause is at most `pause`, each further one twice as long, up to `longest`. A
    /// server that asks for more than `longest` ends the call.
    TryAgainAdapter(std::shared_ptr<IHttpClient> const& client, int attempts, Time pause,
                    Time longest)
        : ClientAdapter(client), attempts_(attempts), pause_(pause), longest_(longest) {}

private:
    Response perform(Request const& request, Options const& options,
                     Operation const& operation) override {
        std::random_device random;
        auto pause = pause_;
        for (int attempt = 1;; ++attempt) {
            auto response = operation(client(), request, options);
            auto const asked = retryAfter(response);
            if (attempt >= attempts_ || !asked || *asked > longest_) {
                return response;
            }
            // Half of it by chance, so that clients that failed together do not return together.
            std::uniform_int_distribution<Time::rep> chance(pause.count() / 2, pause.count());
            for (auto left = *asked + Time(chance(random)); left > Time(0); left -= Time(50)) {
                if (options.isCancelled && options.isCancelled()) {
                    response.error.code = ErrorCode::RequestCancelled;
                    return response;
                }
                std::this_thread::sleep_for(std::min(left, Time(50)));
            }
            pause = std::min(2 * pause, longest_);
        }
    }

    int attempts_;
    Time pause_, longest_;
};
// [/snippet]

}  // namespace Recipes
