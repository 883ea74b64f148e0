#pragma once

#include <string>

#include "Networking/Types.h"

/// What of a request crosses the wire, and whether it can. libcpr and libcurl pass most texts on as
/// C strings and do not look at line breaks: a NUL cuts a text, silently, and a line break in a
/// header starts the next one (RFC 9110, section 5.5). Such requests are refused before they are
/// sent.
namespace Ostrel::Networking {

/// The URL as libcpr wants it: without the query, which travels as `cpr::Parameters` and is
/// appended by libcpr, and without the fragment, which never crosses the wire and would swallow the
/// query that is appended to it.
[[nodiscard]] Url urlForSession(Url url);

/// Why a request cannot be sent as it is, naming the field and the reason; empty if it can.
[[nodiscard]] std::string refusalOf(Request const& request, Options const& options);

/// The same for a form.
[[nodiscard]] std::string refusalOf(MultiPart const& multiPart);

}  // namespace Ostrel::Networking
