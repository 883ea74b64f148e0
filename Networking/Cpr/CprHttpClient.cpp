#include "Networking/Cpr/CprHttpClient.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>

#include <cpr/cpr.h>
#include <curl/curl.h>

#include "Networking/Cpr/Compatibility.h"
#include "Networking/Cpr/ResponseHead.h"
#include "Networking/Cpr/TransferCallbacks.h"
#include "Networking/Cpr/WireFormat.h"

namespace Ostrel::Networking {

namespace {

/// Throws `std::runtime_error` if libcurl refuses: no transfer is better than one without the
/// option.
template <typename Value>
void setCurlOption(CURL* handle, CURLoption option, Value value) {
    if (auto const code = curl_easy_setopt(handle, option, value); code != CURLE_OK) {
        throw std::runtime_error(std::string("libcurl: ") + curl_easy_strerror(code));
    }
}

/// Host and port of the URL of a proxy; ":" if that is not a URL, empty for no proxy.
std::string proxyAddress(std::string const& proxy) {
    Url const url(proxy);
    return proxy.empty() ? "" : url.host() + ":" + url.port();
}

/// Makes the transfer depend only on the arguments of the call. Whatever the environment contains,
/// there is no proxy unless the call sets one, and that proxy is used for every host. Only HTTP and
/// HTTPS are used, also for redirects. Signal handlers of the process are not changed. Calls
/// libcurl directly, because libcpr has no options for this, or ignores that libcurl refuses one.
void setupCurlHandle(cpr::Session& session, std::string const& proxy) {
    auto* const handle = session.GetCurlHolder()->handle;
    // An empty text, for no proxy, keeps libcurl from reading the environment.
    setCurlOption(handle, CURLOPT_PROXY, proxyAddress(proxy).c_str());
    setCurlOption(handle, CURLOPT_NOPROXY, "");
    // A proxy's response to CONNECT is not a response to the request.
    setCurlOption(handle, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    // Otherwise libcurl replaces the SIGPIPE handler during a transfer, which affects other
    // threads.
    setCurlOption(handle, CURLOPT_NOSIGNAL, 1L);
    // Deprecated, but every libcurl supports them. A libcurl older than the headers used for
    // compiling, for instance the system's, refuses the options that replace them.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
    for (auto const option : {CURLOPT_PROTOCOLS, CURLOPT_REDIR_PROTOCOLS}) {
        setCurlOption(handle, option, long{CURLPROTO_HTTP | CURLPROTO_HTTPS});
    }
#pragma GCC diagnostic pop
#if LIBCURL_VERSION_NUM >= 0x075700
    // Lets a call end without waiting for a name lookup that outlasts it. A libcurl without this
    // option, older than 7.87, waits; nothing else depends on it.
    curl_easy_setopt(handle, CURLOPT_QUICK_EXIT, 1L);
#endif
}

/// libcurl reads a body through this function if it could not copy it, which libcpr ignores;
/// without it, libcurl would send the standard input of the process.
std::size_t refuseToRead(char*, std::size_t, std::size_t, void* callbacks) {
    static_cast<TransferCallbacks*>(callbacks)->refuse(ErrorCode::InternalError,
                                                       "The transport could not copy the body");
    return CURL_READFUNC_ABORT;
}

void setCallbacks(cpr::Session& session, TransferCallbacks& callbacks) {
    session.SetOption(cpr::HeaderCallback(
        [&callbacks](auto&& line, std::intptr_t) { return callbacks.addHead(line); }, 0));
    session.SetOption(cpr::WriteCallback(
        [&callbacks](auto&& piece, std::intptr_t) {
            return callbacks.addBody(std::forward<decltype(piece)>(piece));
        },
        0));
    session.SetOption(cpr::ProgressCallback(
        [&callbacks](auto total, auto downloaded, auto, auto, std::intptr_t) {
            return callbacks.addProgress(total, downloaded);
        },
        0));
    auto* const handle = session.GetCurlHolder()->handle;
    setCurlOption(handle, CURLOPT_READFUNCTION, &refuseToRead);
    setCurlOption(handle, CURLOPT_READDATA, static_cast<void*>(&callbacks));
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
    constexpr auto IS_FOR_SUBDOMAINS = false;
    constexpr auto IS_HTTPS_ONLY = false;
    auto const noExpiry = std::chrono::system_clock::from_time_t(0);
    cpr::Cookies cookies(true);
    for (auto const& [name, value] : request.cookies) {
        cookies.push_back(
            cpr::Cookie(name, value, "", IS_FOR_SUBDOMAINS, "/", IS_HTTPS_ONLY, noExpiry));
    }
    return cookies;
}

/// Makes a session that is ready to perform. It refers to `callbacks`, which must outlive it.
std::unique_ptr<cpr::Session> setupCprSession(Request const& request, Options const& options,
                                              TransferCallbacks& callbacks) {
    auto session = std::make_unique<cpr::Session>();
    setupCurlHandle(*session, options.proxy);
    session->SetOption(cpr::Url(urlForSession(request.url).toString()));
    session->SetOption(parametersOf(request.url));
    session->SetOption(cpr::Header(request.headers.begin(), request.headers.end()));
    session->SetOption(cookiesOf(request));
    if (request.cookies.empty()) {
        // For an empty list, libcpr sets an empty text, for which libcurl sends a "Cookie" line.
        setCurlOption(session->GetCurlHolder()->handle, CURLOPT_COOKIE, nullptr);
    }
    session->SetOption(cpr::Timeout(std::chrono::milliseconds(options.timeout / 1000)));
    constexpr auto SENDS_CREDENTIALS_TO_OTHER_HOSTS = false;
    session->SetOption(cpr::Redirect(long{options.maxRedirects}, options.followRedirects,
                                     SENDS_CREDENTIALS_TO_OTHER_HOSTS,
                                     cpr::PostRedirectFlags::POST_ALL));
    setCallbacks(*session, callbacks);
    if (options.lowSpeedLimit > 0 && options.lowSpeedTime > 0) {
        session->SetLowSpeed(Compatibility::lowSpeed(options.lowSpeedLimit, options.lowSpeedTime));
    }
    return session;
}

/// Moves the fields of `response`, and what `callbacks` collected, into a `Response`. If a cookie
/// name repeats, the first value is kept.
Response responsefromCprFormat(cpr::Response&& response, TransferCallbacks& callbacks) {
    Response result;
    result.error.code = Compatibility::errorCodeOf(response.error.code);
    result.error.message = std::move(response.error.message);
    auto const isComplete = result.error.code == ErrorCode::Ok;
    // If a redirect leads through a proxy that refuses it, libcurl has no status, but a head.
    auto head = response.status_code == 0 ? ResponseHead()
                                          : readResponseHead(callbacks.heads(), isComplete);
    result.statusCode = static_cast<std::int32_t>(response.status_code);
    result.statusLine = std::move(head.statusLine);
    result.reason = std::move(head.reason);
    result.body = callbacks.takeBody();
    result.headers = std::move(head.headers);
    for (auto cookie = response.cookies.cbegin(); cookie != response.cookies.cend(); ++cookie) {
        result.cookies.emplace(cookie->GetName(), cookie->GetValue());
    }
    if (callbacks.refusal()) {
        result.error = *callbacks.refusal();
    }
    return result;
}

/// Throws `std::bad_alloc` if memory does not suffice for libcurl's copy of a form: libcpr ignores
/// that libcurl cannot make it, and the form would be sent without its larger parts.
void requireMemory(std::size_t size) { ::operator delete(::operator new(size)); }

Response refused(std::string reason) {
    Response response;
    response.error.message = std::move(reason);
    return response;
}

/// Runs one operation: checks the request, sets up a session, performs it, converts the result.
/// `perform` adds the body and returns libcpr's response. That response keeps the connection open,
/// so it is destroyed before the session, and both before this function returns.
template <typename Perform>
Response transfer(Request const& request, MultiPart const& form, Options const& options,
                  Perform perform) {
    if (!request.url.isValid()) {
        return {};
    }
    if (auto refusal = refusalOf(request, form, options); !refusal.empty()) {
        return refused(std::move(refusal));
    }
    TransferCallbacks callbacks(options);
    auto const session = setupCprSession(request, options, callbacks);
    return responsefromCprFormat(perform(*session), callbacks);
}

}  // namespace

Response CprHttpClient::get(Request const& request, Options const& options) {
    return transfer(request, {}, options, [](cpr::Session& session) { return session.Get(); });
}

Response CprHttpClient::head(Request const& request, Options const& options) {
    return transfer(request, {}, options, [](cpr::Session& session) { return session.Head(); });
}

Response CprHttpClient::post(Request const& request, std::string const& body,
                             Options const& options) {
    return transfer(request, {}, options, [&body](cpr::Session& session) {
        // Otherwise some releases of libcurl send a GET if they cannot copy the body.
        setCurlOption(session.GetCurlHolder()->handle, CURLOPT_POST, 1L);
        session.SetOption(cpr::Body(body));
        return session.Post();
    });
}

Response CprHttpClient::post(Request const& request, MultiPart const& multiPart,
                             Options const& options) {
    auto const perform = [&multiPart](cpr::Session& session) {
        cpr::Multipart form(std::initializer_list<cpr::Part>{});
        std::size_t size = 0;
        for (auto const& part : multiPart.parts) {
            form.parts.emplace_back(part.name, part.value, part.contentType);
            size += part.value.size();
        }
        requireMemory(size);
        session.SetOption(std::move(form));
        return session.Post();
    };
    return transfer(request, multiPart, options, perform);
}

}  // namespace Ostrel::Networking
