#pragma once

#include <memory>

#include "Networking/Adapters/ClientAdapter.h"
#include "Networking/CookieJar/ICookieJar.h"
#include "Networking/Export.h"

namespace Ostrel::Networking {

/// Sends the cookies that a jar holds for the URL of a request, in place of those in the request,
/// and stores the cookies of every response in the jar, of failed ones too. All are stored under
/// the URL of the request, also where a redirect led elsewhere. Of selected cookies with one name,
/// the first in the order of the jar is sent. Nothing is ever deleted. Selecting, sending and
/// storing are not atomic together.
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
