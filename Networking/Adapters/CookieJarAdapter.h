#pragma once

#include <memory>

#include "Networking/Adapters/ClientAdapter.h"
#include "Networking/CookieJar/ICookieJar.h"
#include "Networking/Export.h"

namespace Ostrel::Networking {

/// Sends the cookies that a jar holds for the URL of a request, in place of those in the request.
/// If several have the same name, the first in the order of the jar is sent.
///
/// Stores the cookies of every response, even if the call failed, under the URL of the request,
/// even if a redirect led to another host. Cookies are never deleted, not even those that the
/// server deletes: after a logout, call `ICookieJar::deleteCookie` or start with a new jar.
///
/// Selecting, sending and storing are not one atomic operation. Throws what client and jar throw;
/// if the jar throws while it stores, the response is lost.
class QORNETWORKING_EXPORT CookieJarAdapter final : public ClientAdapter {
public:
    /// Shares ownership of both, neither of which may be empty.
    CookieJarAdapter(std::shared_ptr<IHttpClient> const& client,
                     std::shared_ptr<ICookieJar> const& jar);

private:
    Response perform(Request const& request, Options const& options,
                     Operation const& operation) override;

    std::shared_ptr<ICookieJar> jar_;
};

}  // namespace Ostrel::Networking
