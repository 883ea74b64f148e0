#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include <Networking/Adapters/ClientAdapter.h>

namespace Recipes {

using namespace Ostrel::Networking;

// [snippet]
/// Sends a bearer token to one server. After a 401, gets a new token and repeats the call once.
class TokenAdapter final : public ClientAdapter {
public:
    /// Only URLs with the protocol, host and port of `server` get the token. `refresh` returns a
    /// new token, also if `token` is empty; an empty one if it fails. It must not use this adapter.
    TokenAdapter(std::shared_ptr<IHttpClient> const& client, Url const& server,
                 std::string const& token, std::function<std::string()> const& refresh)
        : ClientAdapter(client), server_(server), refresh_(refresh), token_(token) {}

private:
    Response perform(Request const& request, Options const& options,
                     Operation const& operation) override {
        if (request.url.protocol() != server_.protocol() || request.url.host() != server_.host() ||
            request.url.port() != server_.port()) {
            return operation(client(), request, options);
        }
        auto sent = request;
        auto const token = tokenOtherThan("");
        sent.headers["Authorization"] = "Bearer " + token;
        auto response = operation(client(), sent, options);
        auto const isRefused = response.error.code == ErrorCode::Ok && response.statusCode == 401;
        auto const fresh = isRefused && !token.empty() ? tokenOtherThan(token) : "";
        if (!fresh.empty()) {
            sent.headers["Authorization"] = "Bearer " + fresh;
            response = operation(client(), sent, options);
        }
        return response;
    }

    std::string tokenOtherThan(std::string const& refused) {
        std::lock_guard const lock(mutex_);
        if (token_ == refused) {  // Otherwise another thread has refreshed it.
            token_ = refresh_();
        }
        return token_;
    }

    Url server_;
    std::function<std::string()> refresh_;
    std::string token_;
    std::mutex mutex_;  // Guards the token, also while it is refreshed.
};
// [/snippet]

}  // namespace Recipes
