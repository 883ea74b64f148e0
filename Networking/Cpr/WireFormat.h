#pragma once

#include <string>

#include "Networking/Types.h"

/// Private: not installed. Determines what is sent, and whether a request can be sent.
///
/// libcpr and libcurl treat most texts as C strings and do not check for line breaks: a NUL
/// silently truncates a text, and a line break in a header starts another header (RFC 9110,
/// section 5.5). libcurl drops some headers, and an option that is too long, without an error. Such
/// requests are refused before they are sent.
namespace Ostrel::Networking {

/// The URL in the form that libcpr expects: without the query, which libcpr appends from
/// `cpr::Parameters`, and without the fragment, which is never sent. A query appended to a fragment
/// would become part of it.
[[nodiscard]] Url urlForSession(Url url);

/// Returns why a request cannot be sent unchanged, with the name of the field; empty if it can.
/// `form` has no parts if the request has no form.
[[nodiscard]] std::string refusalOf(Request const& request, MultiPart const& form,
                                    Options const& options);

}  // namespace Ostrel::Networking
