#pragma once

#include <string>

#include "Networking/Types.h"

/// What of a request is sent, and whether it can be sent. libcpr and libcurl pass most texts on as
/// C strings and do not look at line breaks: a NUL silently cuts a text, and a line break in a
/// header starts another header (RFC 9110, section 5.5). Such requests are refused before they are
/// sent.
namespace Ostrel::Networking {

/// The URL in the form that libcpr expects: without the query, which libcpr appends from
/// `cpr::Parameters`, and without the fragment, which is never sent and would swallow the query
/// that is appended to it.
[[nodiscard]] Url urlForSession(Url url);

/// Why a request cannot be sent unchanged, with the name of the field; empty if it can be sent.
[[nodiscard]] std::string refusalOf(Request const& request, Options const& options);

/// Why a form cannot be sent unchanged; empty if it can be sent.
[[nodiscard]] std::string refusalOf(MultiPart const& multiPart);

}  // namespace Ostrel::Networking
