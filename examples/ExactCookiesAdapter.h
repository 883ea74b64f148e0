#pragma once

#include <memory>
#include <string>

#include <Networking/Adapters/ClientAdapter.h>

namespace Recipes {

using namespace Ostrel::Networking;

// [snippet]
/// Sends cookies exactly as the server set them, instead of percent-encoded.
class ExactCookiesAdapter final : public ClientAdapter {
public:
    explicit ExactCookiesAdapter(std::shared_ptr<IHttpClient> const& client)
        : ClientAdapter(client) {}

private:
    Response perform(Request const& request, Options const& options,
                     Operation const& operation) override {
        auto sent = request;
        sent.cookies.clear();
        for (auto const& [name, value] : request.cookies) {
            auto& line = sent.headers["Cookie"];
            line.append(line.empty() ? "" : "; ").append(name).append("=").append(value);
        }
        return operation(client(), sent, options);
    }
};
// [/snippet]

}  // namespace Recipes
