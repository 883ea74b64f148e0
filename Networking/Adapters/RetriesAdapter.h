#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Networking/Adapters/ClientAdapter.h"
#include "Networking/Export.h"

namespace Ostrel::Networking {

/// One attempt of a call.
struct Retry {
    /// Time limit of the attempt, in microseconds; replaces `Options::timeout`.
    std::int64_t timeout = 0;
    /// The client that performs the attempt, shared; if empty, the inner client of the adapter.
    std::shared_ptr<IHttpClient> client = {};
};

/// Repeats a call that ends as `ErrorCode::OperationTimedOut`; any other outcome ends the call. The
/// plan, `retries`, has one entry for each attempt, including the first. The next attempt starts at
/// once. The response of the last attempt is returned unchanged.
///
/// Everything is repeated: a POST is sent again, and `Options::onData` and `Options::onProgress`
/// start again, so `onData` must cope with pieces of an attempt that failed.
class QORNETWORKING_EXPORT RetriesAdapter final : public ClientAdapter {
public:
    /// Shares ownership of `client`, which may be empty if every entry has its own client. Throws
    /// `std::runtime_error` if `retries` is empty.
    RetriesAdapter(std::shared_ptr<IHttpClient> const& client, std::vector<Retry> const& retries);

private:
    Response perform(Request const& request, Options const& options,
                     Operation const& operation) override;

    std::vector<Retry> retries_;
};

}  // namespace Ostrel::Networking
