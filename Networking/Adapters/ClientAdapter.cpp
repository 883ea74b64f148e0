#include "Networking/Adapters/ClientAdapter.h"

namespace Ostrel::Networking {

ClientAdapter::ClientAdapter(std::shared_ptr<IHttpClient> const& client) : client_(client) {}

Response ClientAdapter::get(Request const& request, Options const& options) {
    return perform(request, options, [](auto& client, auto const& sent, auto const& with) {
        return client.get(sent, with);
    });
}

Response ClientAdapter::head(Request const& request, Options const& options) {
    return perform(request, options, [](auto& client, auto const& sent, auto const& with) {
        return client.head(sent, with);
    });
}

Response ClientAdapter::post(Request const& request, std::string const& body,
                             Options const& options) {
    return perform(request, options, [&body](auto& client, auto const& sent, auto const& with) {
        return client.post(sent, body, with);
    });
}

Response ClientAdapter::post(Request const& request, MultiPart const& multiPart,
                             Options const& options) {
    return perform(request, options,
                   [&multiPart](auto& client, auto const& sent, auto const& with) {
                       return client.post(sent, multiPart, with);
                   });
}

}  // namespace Ostrel::Networking
