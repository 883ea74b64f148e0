#include "Networking/Adapters/RetriesAdapter.h"

#include <stdexcept>

namespace Ostrel::Networking {

namespace {

/// Returns `client` for the base class to store. Checks the plan first, so that nothing is stored
/// if the plan is empty.
std::shared_ptr<IHttpClient> const& clientForPlan(std::shared_ptr<IHttpClient> const& client,
                                                  std::vector<Retry> const& retries) {
    if (retries.empty()) {
        throw std::runtime_error("Empty vector of retries provided");
    }
    return client;
}

}  // namespace

RetriesAdapter::RetriesAdapter(std::shared_ptr<IHttpClient> const& client,
                               std::vector<Retry> const& retries)
    : ClientAdapter(clientForPlan(client, retries)), retries_(retries) {}

Response RetriesAdapter::perform(Request const& request, Options const& options,
                                 Operation const& operation) {
    auto attempt = options;
    Response response;
    for (auto const& retry : retries_) {
        attempt.timeout = retry.timeout;
        response = operation(retry.client ? *retry.client : client(), request, attempt);
        if (response.error.code != ErrorCode::OperationTimedOut) {
            break;
        }
    }
    return response;
}

}  // namespace Ostrel::Networking
