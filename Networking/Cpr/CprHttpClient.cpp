#include "Networking/Cpr/CprHttpClient.h"

#include <chrono>
#include <initializer_list>
#include <map>
#include <memory>
#include <utility>

#include <cpr/cpr.h>
#include <curl/curl.h>

#include "Networking/Cpr/Compatibility.h"
#include "Networking/Cpr/TransferCallbacks.h"

namespace Ostrel::Networking {

namespace {

/// In bytes. libcurl hands a body on in pieces of 16 KiB at most, whatever the size of its buffer;
/// the default, which is the same, costs a system call for each piece.
constexpr long RECEIVE_BUFFER_SIZE = 64L * 1024;

/// The URL as libcpr wants it: without the query, which travels as `cpr::Parameters` and is
/// appended by libcpr, and without the fragment, which never crosses the wire and would swallow the
/// query that is appended to it.
Url urlForSession(Url url) {
    url.setParameters({});
    url.setAnchor({});
    return url;
}

cpr::Parameters parametersOf(Url const& url) {
    cpr::Parameters parameters;
    parameters.encode = true;
    for (auto const& [name, value] : url.parameters()) {
        parameters.Add(cpr::Parameter{name, value});
    }
    return parameters;
}

cpr::Cookies cookiesOf(Request const& request) {
    cpr::Cookies cookies(true);
    for (auto const& [name, value] : request.cookies) {
        cookies.push_back(cpr::Cookie(name, value, "", false, "/", false,
                                      std::chrono::system_clock::from_time_t(0)));
    }
    return cookies;
}

/// libcpr selects proxies by the protocol of the request.
cpr::Proxies proxiesFor(std::string const& protocol, std::string const& proxy) {
    Url const url(proxy);
    return cpr::Proxies(
        std::map<std::string, std::string>{{protocol, url.host() + ":" + url.port()}});
}

/// Makes a session that is ready to perform. It refers to `options`, which must outlive it.
std::unique_ptr<cpr::Session> setupCprSession(Request const& request, Options const& options) {
    auto session = std::make_unique<cpr::Session>();
    auto const url = urlForSession(request.url);
    session->SetOption(cpr::Url(url.toString()));
    session->SetOption(parametersOf(request.url));
    session->SetOption(cpr::Header(request.headers.begin(), request.headers.end()));
    session->SetOption(cookiesOf(request));
    session->SetOption(cpr::Timeout(std::chrono::milliseconds(options.timeout / 1000)));
    session->SetOption(cpr::Redirect(long{options.maxRedirects}, options.followRedirects, false,
                                     cpr::PostRedirectFlags::POST_ALL));
    if (!options.proxy.empty()) {
        session->SetProxies(proxiesFor(url.protocol(), options.proxy));
    }
    curl_easy_setopt(session->GetCurlHolder()->handle, CURLOPT_BUFFERSIZE, RECEIVE_BUFFER_SIZE);
    if (options.onData) {
        session->SetOption(cpr::WriteCallback(WriteCallback(options), 0));
    }
    session->SetOption(cpr::ProgressCallback(ProgressCallback(options), 0));
    if (options.lowSpeedLimit > 0 && options.lowSpeedTime > 0) {
        session->SetLowSpeed(Compatibility::lowSpeed(options.lowSpeedLimit, options.lowSpeedTime));
    }
    return session;
}

/// Takes over what `response` holds. Of headers and cookies with the same name the first stays.
Response responsefromCprFormat(cpr::Response&& response) {
    Response result;
    result.statusCode = static_cast<std::int32_t>(response.status_code);
    result.statusLine = std::move(response.status_line);
    result.reason = std::move(response.reason);
    result.body = std::move(response.text);
    result.headers.merge(response.header);
    for (auto cookie = response.cookies.cbegin(); cookie != response.cookies.cend(); ++cookie) {
        result.cookies.emplace(cookie->GetName(), cookie->GetValue());
    }
    result.error.code = Compatibility::errorCodeOf(response.error.code);
    result.error.message = std::move(response.error.message);
    return result;
}

/// The road of all four operations; `perform` adds the body and gives libcpr's response. That
/// response keeps the connection open, so it is gone before the session is, and both are before
/// this returns.
template <typename Perform>
Response transfer(Request const& request, Options const& options, Perform perform) {
    if (!request.url.isValid()) {
        return {};
    }
    auto const session = setupCprSession(request, options);
    return responsefromCprFormat(perform(*session));
}

}  // namespace

Response CprHttpClient::get(Request const& request, Options const& options) {
    return transfer(request, options, [](cpr::Session& session) { return session.Get(); });
}

Response CprHttpClient::head(Request const& request, Options const& options) {
    return transfer(request, options, [](cpr::Session& session) { return session.Head(); });
}

Response CprHttpClient::post(Request const& request, std::string const& body,
                             Options const& options) {
    return transfer(request, options, [&body](cpr::Session& session) {
        session.SetOption(cpr::Body(body));
        return session.Post();
    });
}

Response CprHttpClient::post(Request const& request, MultiPart const& multiPart,
                             Options const& options) {
    return transfer(request, options, [&multiPart](cpr::Session& session) {
        cpr::Multipart form(std::initializer_list<cpr::Part>{});
        for (auto const& part : multiPart.parts) {
            form.parts.emplace_back(part.name, part.value, part.contentType);
        }
        session.SetOption(std::move(form));
        return session.Post();
    });
}

}  // namespace Ostrel::Networking
