#include "benchmarks/Support/Fetch.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <utility>

#include <cpr/cpr.h>
#include <curl/curl.h>

#include "Networking/CreateHttpClient.h"

namespace Ostrel::Networking::Benchmarks {

namespace {

constexpr long TIMEOUT_MS = 30'000;
constexpr int MAX_REDIRECTS = 5;

void require(bool isComplete, std::string const& url) {
    if (!isComplete) {
        throw std::runtime_error("No complete response from " + url);
    }
}

Response getByLibrary(std::string const& url, std::function<void(std::string)> onData) {
    Request request;
    request.url = url;
    request.headers = {{"Accept", "application/json"}, {"Accept-Language", "en"}};
    request.cookies = {{"session", "38afes7a8"}, {"theme", "dark"}};
    Options options;
    options.timeout = std::int64_t{TIMEOUT_MS} * 1000;
    options.followRedirects = true;
    options.maxRedirects = MAX_REDIRECTS;
    options.onData = std::move(onData);
    auto response = createHttpClient(HttpClientType::Cpr)->get(request, options);
    require(response.error.code == ErrorCode::Ok, url);
    return response;
}

cpr::Response getByCpr(cpr::Session& session, std::string const& url) {
    session.SetUrl(cpr::Url(url));
    session.SetHeader({{"Accept", "application/json"}, {"Accept-Language", "en"}});
    session.SetCookies({{"session", "38afes7a8"}, {"theme", "dark"}});
    session.SetTimeout(std::chrono::milliseconds(TIMEOUT_MS));
    session.SetRedirect(
        cpr::Redirect(long{MAX_REDIRECTS}, true, false, cpr::PostRedirectFlags::POST_ALL));
    session.SetProgressCallback(cpr::ProgressCallback([](auto&&...) { return true; }));
    auto response = session.Get();
    require(!response.error, url);
    return response;
}

std::size_t append(char* data, std::size_t one, std::size_t size, void* target) {
    static_cast<std::string*>(target)->append(data, one * size);
    return one * size;
}

int carryOn(void*, curl_off_t, curl_off_t, curl_off_t, curl_off_t) { return 0; }

}  // namespace

std::size_t collectByLibrary(std::string const& url) { return getByLibrary(url, {}).body.size(); }

std::size_t streamByLibrary(std::string const& url) {
    std::size_t size = 0;
    getByLibrary(url, [&size](std::string const& piece) { size += piece.size(); });
    return size;
}

std::size_t collectByCpr(std::string const& url) {
    cpr::Session session;
    return getByCpr(session, url).text.size();
}

std::size_t streamByCpr(std::string const& url) {
    std::size_t size = 0;
    cpr::Session session;
    session.SetWriteCallback(cpr::WriteCallback([&size](auto const& piece, std::intptr_t) {
        size += piece.size();
        return true;
    }));
    getByCpr(session, url);
    return size;
}

std::size_t collectByCurl(std::string const& url) {
    std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> const handle(curl_easy_init(),
                                                                     curl_easy_cleanup);
    std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> const headers(
        curl_slist_append(curl_slist_append(nullptr, "Accept: application/json"),
                          "Accept-Language: en"),
        curl_slist_free_all);
    std::string body;
    std::string head;
    auto* const curl = handle.get();
    curl_easy_setopt(curl, CURLOPT_URL, url.c_str());
    curl_easy_setopt(curl, CURLOPT_HTTPHEADER, headers.get());
    curl_easy_setopt(curl, CURLOPT_COOKIEFILE, "");
    curl_easy_setopt(curl, CURLOPT_COOKIE, "session=38afes7a8; theme=dark");
    curl_easy_setopt(curl, CURLOPT_ACCEPT_ENCODING, "");
    curl_easy_setopt(curl, CURLOPT_TIMEOUT_MS, TIMEOUT_MS);
    curl_easy_setopt(curl, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(curl, CURLOPT_MAXREDIRS, long{MAX_REDIRECTS});
    curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(curl, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(curl, CURLOPT_XFERINFOFUNCTION, carryOn);
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, append);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, &body);
    curl_easy_setopt(curl, CURLOPT_HEADERFUNCTION, append);
    curl_easy_setopt(curl, CURLOPT_HEADERDATA, &head);
    require(curl_easy_perform(curl) == CURLE_OK, url);
    return body.size();
}

}  // namespace Ostrel::Networking::Benchmarks
