#pragma once

#include <atomic>
#include <chrono>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

#include <Networking/IHttpClient.h>

namespace Recipes {

using namespace Ostrel::Networking;

// [snippet]
/// A call on a thread of its own. The destructor cancels it, but does not wait for its end.
class BackgroundCall {
public:
    /// `deliver` runs on that thread, while this object exists. It must not block, and should only
    /// pass the response on to the window's thread, where `this` or the weak `self` is the window:
    /// Qt:    [this](Response r) { QMetaObject::invokeMethod(this, [this, r] { show(r); }); }
    /// Cocoa: [self](Response r) {
    ///            dispatch_async(dispatch_get_main_queue(), ^{ [self show:r]; });
    ///        }
    BackgroundCall(std::function<Response(Options const&)> const& call, Options options,
                   std::function<void(Response)> const& deliver) {
        options.isCancelled = [state = state_] { return state->isCancelled.load(); };
        std::thread([=, state = state_] {
            Response response;
            try {
                response = call(options);
            } catch (std::exception const& exception) {
                response.error = {ErrorCode::UnknownError, exception.what()};
            }
            std::lock_guard const lock(state->delivery);
            if (!state->isCancelled) {
                deliver(std::move(response));
            }
        }).detach();
    }
    ~BackgroundCall() {
        state_->isCancelled = true;
        std::lock_guard const lock(state_->delivery);  // Waits if `deliver` is running.
    }
    BackgroundCall(BackgroundCall const&) = delete;

    /// Waits until all calls have ended. Returns false if one has not within about `limit`.
    static bool waitForAll(std::chrono::milliseconds limit) {
        for (; State::COUNT > 0 && limit.count() > 0; --limit) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return State::COUNT == 0;
    }

private:
    struct State {
        State() { ++COUNT; }
        ~State() { --COUNT; }
        inline static std::atomic<int> COUNT = 0;
        std::atomic<bool> isCancelled = false;
        std::mutex delivery;
    };
    std::shared_ptr<State> const state_ = std::make_shared<State>();
};
// [/snippet]

}  // namespace Recipes
