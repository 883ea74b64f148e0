#pragma once

#include <algorithm>
#include <string>

#include <Networking/Url.h>

namespace Recipes {

using namespace Ostrel::Networking;

// [snippet]
/// The URL of a link, whose query is sent exactly as it was written.
inline Url linkAsGiven(std::string const& link) {
    auto const text = link.substr(0, link.find('#'));  // The fragment is not sent.
    auto const query = std::min(text.find('?'), text.size());
    Url url(text.substr(0, query));
    url.setPath((url.path().empty() ? "/" : url.path()) + text.substr(query));
    return url;
}
// [/snippet]

}  // namespace Recipes
