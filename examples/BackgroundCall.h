#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include <Networking/IHttpClient.h>

namespace Recipes {

using namespace Ostrel::Networking;

// [snippet]
/// A call on a thread of its own. The destructor cancels it, but does not wait for its end.
class BackgroundCall {
public:
    /// `deliver` runs on that thread, while this object exists. It must not block.
    BackgroundCall(std::function<Response(Options const&)> const& call, Options options,
                   std::function<void(Response const&)> const& deliver) {
        options.isCancelled = [isCancelled = isCancelled_] { return isCancelled->load(); };
        ++RUNNING;
        std::thread([=, end = std::shared_ptr<void>(nullptr, [](void*) { --RUNNING; })] {
            Response response;
            try {
                response = call(options);
            } catch (...) {
                response.error.code = ErrorCode::UnknownError;
            }
            std::lock_guard const lock(DELIVERY);
            if (!options.isCancelled()) {
                deliver(response);
            }
        }).detach();
    }
    ~BackgroundCall() {
        std::lock_guard const lock(DELIVERY);  // Waits if a `deliver` is running.
        *isCancelled_ = true;
    }
    BackgroundCall(BackgroundCall const&) = delete;

    /// Waits until all calls have ended. Returns false if one has not within about `limit`.
    static bool waitForAll(std::chrono::milliseconds limit) {
        for (; RUNNING > 0 && limit.count() > 0; --limit) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return RUNNING == 0;
    }

private:
    inline static std::atomic<int> RUNNING = 0;
    inline static std::mutex DELIVERY;
    std::shared_ptr<std::atomic<bool>> const isCancelled_{new std::atomic<bool>(false)};
};
// [/snippet]

}  // namespace Recipes
