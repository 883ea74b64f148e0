#pragma once

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <optional>

#include <Networking/Response.h>

namespace Recipes {

using namespace Ostrel::Networking;

// [snippet]
/// How long to wait at least before a call is repeated; nothing if it should not be repeated.
inline std::optional<std::chrono::seconds> retryAfter(Response const& response) {
    auto const code = response.error.code;
    auto const status = response.statusCode;
    // With a status, it is the target of a redirect that the request did not reach.
    auto const isUnsent = status == 0 && (code == ErrorCode::ConnectionFailure ||
                                          code == ErrorCode::HostResolutionFailure);
    auto const isPutOff = code == ErrorCode::Ok && (status == 429 || status == 503);
    if (!isUnsent && !isPutOff) {
        return std::nullopt;
    }
    auto const found = response.headers.find("Retry-After");  // A date counts as 0 seconds.
    auto const text = found == response.headers.end() ? "" : found->second.c_str();
    return std::chrono::seconds(std::clamp(std::strtoll(text, nullptr, 10), 0LL, 1'000'000LL));
}
// [/snippet]

}  // namespace Recipes
