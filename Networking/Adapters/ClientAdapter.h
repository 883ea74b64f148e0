#pragma once

#include <functional>
#include <memory>
#include <string>

#include "Networking/Export.h"
#include "Networking/IHttpClient.h"

namespace Ostrel::Networking {

/// Base of the adapters, each of which adds one behaviour to an inner client. Routes all four
/// operations through `perform`, so that the behaviour is written once. The smallest example is
/// docs/cookbook/requests.md, "Log and time every call".
///
/// Shares ownership of the inner client, and throws what it throws. This base does not change after
/// construction; a subclass synchronises its own state.
class QORNETWORKING_EXPORT ClientAdapter : public IHttpClient {
public:
    ClientAdapter(ClientAdapter const&) = delete;
    ClientAdapter& operator=(ClientAdapter const&) = delete;

    Response get(Request const& request, Options const& options) final;
    Response head(Request const& request, Options const& options) final;
    Response post(Request const& request, std::string const& body, Options const& options) final;
    Response post(Request const& request, MultiPart const& multiPart, Options const& options) final;

protected:
    /// The caller's `get`, `head` or `post`, with the body or form already bound by reference:
    /// valid only until `perform` returns. Takes the client, the request and the options to use.
    using Operation = std::function<Response(IHttpClient&, Request const&, Options const&)>;

    /// Shares ownership of `client`, which may be empty only if `perform` never calls `client()`.
    explicit ClientAdapter(std::shared_ptr<IHttpClient> const& client);

    /// The inner client. Call it only if the constructor was given one.
    [[nodiscard]] IHttpClient& client() const { return *client_; }

private:
    /// Runs one call: applies `operation` to a client once, several times or not at all.
    virtual Response perform(Request const& request, Options const& options,
                             Operation const& operation) = 0;

    std::shared_ptr<IHttpClient> client_;
};

}  // namespace Ostrel::Networking
