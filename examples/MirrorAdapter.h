#pragma once

#include <cstdint>
#include <memory>

#include <Networking/AddAdapter.h>

namespace Recipes {

using namespace Ostrel::Networking;

// [snippet]
/// Sends every request to the server of another URL, with the user info of that URL.
class MirrorAdapter final : public ClientAdapter {
public:
    MirrorAdapter(std::shared_ptr<IHttpClient> const& client, Url const& mirror)
        : ClientAdapter(client), mirror_(mirror) {}

private:
    Response perform(Request const& request, Options const& options,
                     Operation const& operation) override {
        auto sent = request;
        if (request.url.isValid()) {  // Otherwise it would become a valid one.
            sent.url.setProtocol(mirror_.protocol());
            sent.url.setUserInfo(mirror_.userInfo());
            sent.url.setHost(mirror_.host());
            sent.url.setPort(mirror_.port());
        }
        return operation(client(), sent, options);
    }

    Url mirror_;
};

/// Tries twice, for `patience` microseconds and then for three times as long, and then the mirror,
/// for ten times as long.
inline std::unique_ptr<IHttpClient> addMirror(std::shared_ptr<IHttpClient> const& client,
                                              Url const& mirror, std::int64_t patience) {
    auto const mirrored = std::make_shared<MirrorAdapter>(client, mirror);
    return addRetriesAdapter(client, {{patience}, {3 * patience}, {10 * patience, mirrored}});
}
// [/snippet]

}  // namespace Recipes
