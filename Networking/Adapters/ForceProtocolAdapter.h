#pragma once

#include <cstdint>
#include <memory>

#include "Networking/Adapters/ClientAdapter.h"
#include "Networking/Export.h"

namespace Ostrel::Networking {

/// The protocol that a `ForceProtocolAdapter` forces. Any other value forces none.
enum class ForceProtocolSettings : std::int32_t {
    Http = 0,
    Https = 1,
};

/// Sends every request with one protocol, whatever protocol its URL has. No other part of the URL
/// changes: an explicit port stays, and none is added. The targets of redirects are not changed.
class QORNETWORKING_EXPORT ForceProtocolAdapter final : public ClientAdapter {
public:
    /// Shares ownership of `client`, which must not be empty.
    ForceProtocolAdapter(std::shared_ptr<IHttpClient> const& client,
                         ForceProtocolSettings settings);

private:
    Response perform(Request const& request, Options const& options,
                     Operation const& operation) override;

    ForceProtocolSettings settings_;
};

}  // namespace Ostrel::Networking
