#pragma once

#include <memory>

#include "Networking/Adapters/ClientAdapter.h"
#include "Networking/CookieJar/ICookieJar.h"
#include "Networking/Export.h"

namespace Ostrel::Networking {

/// Sends the cookies that a jar holds for the URL of a request, in place of those in the request,
/// and stores the cookies of every response in the jar, even if the call failed. They are stored
/// under the URL of the request, even if a redirect led to another host. If several selected
/// cookies have the same name, the first in the order of the jar is sent. Cookies are never
/// deleted, not even those that the server deletes: after a logout, call `ICookieJar::deleteCookie`
/// or start with a new jar. Selecting, sending and storing are not one atomic operation.
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
