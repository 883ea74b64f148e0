#pragma once

#include <functional>
#include <string>
#include <tuple>
#include <vector>

#include "Networking/Cpr/CprHttpClient.h"

namespace Ostrel::Networking::Testing {

inline std::string const BODY = "bo\ndy";
inline MultiPart const FORM{{{"name", "value", "text/plain"}, {"other", "", ""}}};

/// One of the four operations, with `BODY` or `FORM` where it takes one.
struct Operation {
    std::string name;
    std::string method;
    std::function<Response(IHttpClient&, Request const&, Options const&)> call;
};

inline std::vector<Operation> operations() {
    return {
        {"get", "GET", [](auto& client, auto& r, auto& o) { return client.get(r, o); }},
        {"head", "HEAD", [](auto& client, auto& r, auto& o) { return client.head(r, o); }},
        {"post body", "POST",
         [](auto& client, auto& r, auto& o) { return client.post(r, BODY, o); }},
        {"post form", "POST",
         [](auto& client, auto& r, auto& o) { return client.post(r, FORM, o); }},
    };
}

/// Long enough for a busy machine, short enough to end a test that hangs.
inline Options patient() {
    Options options;
    options.timeout = 20'000'000;
    return options;
}

/// Follows one redirect.
inline Options following() {
    auto options = patient();
    options.followRedirects = true;
    options.maxRedirects = 1;
    return options;
}

/// For a comparison of whole responses.
inline auto fieldsOf(Response const& r) {
    return std::make_tuple(r.statusCode, r.body, r.headers, r.cookies, r.error.code,
                           r.error.message, r.statusLine, r.reason);
}

inline Request requestFor(std::string const& url) { return {url}; }

inline Response get(std::string const& url, Options const& options = patient()) {
    return CprHttpClient().get(requestFor(url), options);
}

}  // namespace Ostrel::Networking::Testing
