#pragma once

#include <atomic>
#include <cstdint>

#include <Networking/Response.h>

namespace Recipes {

using namespace Ostrel::Networking;

// [snippet]
/// What a window sets and shows while another thread downloads. Sizes are in bytes.
struct DownloadJob {
    std::uintmax_t maxSize = UINTMAX_MAX;
    std::atomic<bool> isCancelled{false};
    std::atomic<std::uintmax_t> received{0};  // With what earlier calls received.
    std::atomic<std::uintmax_t> total{0};     // 0 if it is not known.
    Response response = {};                   // The last one. Read it after the call.
};
// [/snippet]

}  // namespace Recipes
