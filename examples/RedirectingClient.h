#pragma once

#include <functional>
#include <memory>
#include <string>

#include <Networking/IHttpClient.h>

#include "examples/Redirect.h"

namespace Recipes {

using namespace Ostrel::Networking;

// [snippet]
/// Follows up to ten redirects. After 301, 302 and 303 a POST becomes a GET.
class RedirectingClient final : public IHttpClient {
public:
    explicit RedirectingClient(std::shared_ptr<IHttpClient> const& client) : client_(client) {}

    Response get(Request const& request, Options const& options) override {
        return follow(request, options, &IHttpClient::get, &IHttpClient::get);
    }
    Response head(Request const& request, Options const& options) override {
        return follow(request, options, &IHttpClient::head, &IHttpClient::head);
    }
    Response post(Request const& request, std::string const& body,
                  Options const& options) override {
        auto const send = [&](auto& to, auto& r, auto& with) { return to.post(r, body, with); };
        return follow(request, options, send, &IHttpClient::get);
    }
    Response post(Request const& request, MultiPart const& form, Options const& options) override {
        auto const send = [&](auto& to, auto& r, auto& with) { return to.post(r, form, with); };
        return follow(request, options, send, &IHttpClient::get);
    }

private:
    using Send = std::function<Response(IHttpClient&, Request const&, Options const&)>;
    Response follow(Request request, Options options, Send send, Send const& afterwards) {
        options.followRedirects = false;
        auto response = send(*client_, request, options);
        for (auto hops = 1; auto const next = redirected(request, response); ++hops) {
            if (hops > 10) {
                response.error.code = ErrorCode::TooManyRedirects;
                break;
            }
            request = *next;
            if (response.statusCode <= 303) {
                send = afterwards;
                request.headers.erase("Content-Type");
            }
            response = send(*client_, request, options);
        }
        return response;
    }

    std::shared_ptr<IHttpClient> client_;
};
// [/snippet]

}  // namespace Recipes
