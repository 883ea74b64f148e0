#include "Networking/Adapters/ForceProtocolAdapter.h"

#include <string>

namespace Ostrel::Networking {

namespace {

// `Url::setProtocol` takes a string by reference: these need not be created for each call.
std::string const HTTP = "http";
std::string const HTTPS = "https";

}  // namespace

ForceProtocolAdapter::ForceProtocolAdapter(std::shared_ptr<IHttpClient> const& client,
                                           ForceProtocolSettings settings)
    : ClientAdapter(client), settings_(settings) {}

Response ForceProtocolAdapter::perform(Request const& request, Options const& options,
                                       Operation const& operation) {
    auto sent = request;
    if (settings_ == ForceProtocolSettings::Https) {
        sent.url.setProtocol(HTTPS);
    } else if (settings_ == ForceProtocolSettings::Http) {
        sent.url.setProtocol(HTTP);
    }
    return operation(client(), sent, options);
}

}  // namespace Ostrel::Networking
