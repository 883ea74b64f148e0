#include "Networking/Cpr/CprHttpClient.h"

#include <algorithm>
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "examples/LocalServer.h"
#include "tests/Support/Operations.h"

namespace Ostrel::Networking {
namespace {

using ::testing::ElementsAre;
using Testing::operations;
using ::testing::Pair;

/// Long enough for a busy machine, short enough to end a test that hangs.
Options patient() {
    Options options;
    options.timeout = 20'000'000;
    return options;
}

Request requestFor(std::string const& url) {
    Request request;
    request.url = url;
    return request;
}

Response get(std::string const& url, Options const& options = patient()) {
    return CprHttpClient().get(requestFor(url), options);
}

TEST(CprHttpClientTest, SendsUrlHeadersAndCookiesWithEveryOperation) {
    LocalServer server([](auto const&, auto& response) {
        response.set_header("Set-Cookie", "sid=1; Path=/");
        response.set_header("X-Answer", "42");
        response.set_content("body", "text/plain");
    });
    Request request = requestFor(server.url("/a/c?z=1&name=%20#top"));
    request.url.addParameter("a&b", "c=d e");
    request.headers = {{"X-One", "1"}};
    request.cookies = {{"b", "2 3"}, {"a", "\"quoted\""}};

    for (auto const& [name, method, call] : operations()) {
        SCOPED_TRACE(name);
        CprHttpClient client;
        auto const response = call(client, request, patient());

        EXPECT_EQ(response.error.code, ErrorCode::Ok);
        EXPECT_EQ(response.error.message, "");
        EXPECT_EQ(response.statusCode, 200);
        EXPECT_EQ(response.statusLine, "HTTP/1.1 200 OK");
        EXPECT_EQ(response.reason, "OK");
        EXPECT_EQ(response.body, method == "HEAD" ? "" : "body");
        EXPECT_EQ(response.headers.at("x-answer"), "42");
        EXPECT_THAT(response.cookies, ElementsAre(Pair("sid", "1")));

        auto const received = server.requests().back();
        EXPECT_EQ(received.method, method);
        EXPECT_EQ(received.target, "/a/c?a%26b=c%3Dd%20e&name=%2520&z=1");
        EXPECT_EQ(received.get_header_value("X-One"), "1");
        EXPECT_EQ(received.get_header_value("Cookie"), "a=\"quoted\"; b=2 3;");
    }
}

TEST(CprHttpClientTest, PostsBytesAndForms) {
    LocalServer server;
    CprHttpClient client;
    auto request = requestFor(server.url());
    std::string const body("a\0b\r\n\xff", 6);

    (void)client.post(request, "", patient());
    EXPECT_EQ(server.requests().back().body, "");
    EXPECT_EQ(server.requests().back().get_header_value("Content-Length"), "0");
    request.headers = {{"Content-Type", "application/octet-stream"}};
    (void)client.post(request, body, patient());
    EXPECT_EQ(server.requests().back().body, body);
    EXPECT_EQ(server.requests().back().get_header_value("Content-Type"),
              "application/octet-stream");

    request.headers.clear();
    std::string const large(3 << 20, 'x');
    MultiPart const form{
        {{"z", "1", "text/plain"}, {"a", large, ""}, {"m", "{}", "application/json"}}};
    EXPECT_EQ(client.post(request, form, patient()).statusCode, 200);
    auto const sent = server.requests().back().body;
    std::size_t at = 0;
    for (auto const& part : form.parts) {
        auto const type =
            part.contentType.empty() ? "" : "Content-Type: " + part.contentType + "\r\n";
        at = sent.find("Content-Disposition: form-data; name=\"" + part.name + "\"\r\n" + type +
                           "\r\n" + part.value + "\r\n--",
                       at);
        ASSERT_NE(at, std::string::npos) << part.name;
    }
    EXPECT_EQ(client.post(request, MultiPart(), patient()).error.code, ErrorCode::Ok);
}

TEST(CprHttpClientTest, ReportsAnErrorStatusAsCompleted) {
    for (auto const status : {204, 304, 404, 500, 503}) {
        LocalServer server([status](auto const&, auto& response) { response.status = status; });
        auto const response = get(server.url());
        EXPECT_EQ(response.statusCode, status);
        EXPECT_EQ(response.error.code, ErrorCode::Ok);
    }
}

TEST(CprHttpClientTest, FollowsRedirectsAsTold) {
    LocalServer server([](auto const& request, auto& response) {
        auto const hop = std::stoi(request.path.substr(1));
        if (hop > 0) {
            response.set_redirect("/" + std::to_string(hop - 1), 301 + hop % 3);
        } else {
            response.set_content("end of " + request.method + request.body, "text/plain");
        }
    });
    struct Row {
        std::string name;
        bool follow;
        std::int32_t max;
        int hops;
        ErrorCode code;
        int statusCode;
        std::size_t requests;
    };
    for (auto const& row : std::vector<Row>{
             {"not followed", false, 5, 3, ErrorCode::Ok, 301, 1},
             {"followed", true, 5, 3, ErrorCode::Ok, 200, 4},
             {"as many as allowed", true, 3, 3, ErrorCode::Ok, 200, 4},
             {"too many", true, 2, 3, ErrorCode::TooManyRedirects, 302, 3},
             {"none allowed", true, 0, 1, ErrorCode::TooManyRedirects, 302, 1},
         }) {
        SCOPED_TRACE(row.name);
        auto const before = server.requests().size();
        auto options = patient();
        options.followRedirects = row.follow;
        options.maxRedirects = row.max;

        auto const response = CprHttpClient().post(
            requestFor(server.url("/" + std::to_string(row.hops))), "x", options);

        EXPECT_EQ(response.error.code, row.code);
        EXPECT_EQ(response.statusCode, row.statusCode);
        EXPECT_EQ(response.body, row.statusCode == 200 ? "end of POSTx" : "");
        EXPECT_EQ(server.requests().size() - before, row.requests);
    }
}

TEST(CprHttpClientTest, UsesHostAndPortOfTheProxy) {
    LocalServer proxy([](auto const& request, auto& response) {
        response.set_content("for " + request.get_header_value("Host"), "text/plain");
    });
    auto options = patient();
    options.proxy = "x://u:p@127.0.0.1:" + std::to_string(proxy.port()) + "/ignored?a=1";
    EXPECT_EQ(get("http://host.test/x", options).body, "for host.test");
    options.proxy = "no URL";
    EXPECT_EQ(get("http://host.test/x", options).error.code, ErrorCode::ProxyResolutionFailure);
}

std::string largeBody() {
    std::string body;
    for (int i = 0; body.size() < 4'000'000; ++i) {
        body += std::to_string(i);
    }
    return body;
}

TEST(CprHttpClientTest, StreamsTheBodyAndReportsProgress) {
    auto const body = largeBody();
    LocalServer server([&body](auto const&, auto& response) {
        response.set_header("Set-Cookie", "sid=1");
        response.set_content(body, "application/octet-stream");
    });
    EXPECT_TRUE(get(server.url()).body == body) << "collected";

    std::string received;
    std::vector<std::int64_t> reports;
    auto options = patient();
    options.onData = [&received](std::string const& chunk) { received += chunk; };
    options.onProgress = [&](std::int64_t downloaded, std::int64_t total) {
        EXPECT_EQ(total, static_cast<std::int64_t>(body.size()));
        reports.push_back(downloaded);
    };
    auto const response = get(server.url(), options);

    EXPECT_EQ(response.error.code, ErrorCode::Ok);
    EXPECT_EQ(response.statusCode, 200);
    EXPECT_TRUE(received == body) << "streamed";
    EXPECT_EQ(response.body, "");
    EXPECT_EQ(response.cookies.count("sid"), 1U);
    ASSERT_FALSE(reports.empty());
    EXPECT_TRUE(std::is_sorted(reports.begin(), reports.end()));
}

TEST(CprHttpClientTest, IsCancelledWhileDataArrivesOrNot) {
    auto const body = largeBody();
    LocalServer server([&](auto const& request, auto& response) {
        if (request.path == "/stall") {
            server.stall();
        }
        response.set_content(body, "application/octet-stream");
    });
    std::size_t received = 0;
    auto options = patient();
    options.isCancelled = [&received] { return received > 100'000; };
    options.onData = [&received](std::string const& chunk) { received += chunk.size(); };
    EXPECT_EQ(get(server.url(), options).error.code, ErrorCode::RequestCancelled);
    EXPECT_LT(received, body.size() / 2);

    options.isCancelled = [] { return true; };
    options.onData = [](std::string const&) { ADD_FAILURE() << "data after the cancellation"; };
    EXPECT_EQ(get(server.url("/stall"), options).error.code, ErrorCode::RequestCancelled);
    options.onData = nullptr;
    EXPECT_EQ(get(server.url(), options).error.code, ErrorCode::RequestCancelled);
}

TEST(CprHttpClientTest, EndsWhenOutOfTimeOrTooSlow) {
    LocalServer server([&](auto const&, auto&) { server.stall(); });
    auto options = patient();
    options.timeout = 50'999;
    EXPECT_EQ(get(server.url(), options).error.code, ErrorCode::OperationTimedOut);

    options = patient();
    options.lowSpeedLimit = 1000;
    options.lowSpeedTime = 1;
    EXPECT_EQ(get(server.url(), options).error.code, ErrorCode::OperationTimedOut);
}

TEST(CprHttpClientTest, IgnoresHalfALowSpeedPairAndATimeoutBelowAMillisecond) {
    LocalServer server;
    for (auto const& [limit, time, timeout] : std::vector<std::tuple<int, int, std::int64_t>>{
             {1 << 30, 0, 0}, {0, 1, 999}, {-1, 1, -1500}}) {
        Options options;
        options.lowSpeedLimit = limit;
        options.lowSpeedTime = time;
        options.timeout = timeout;
        EXPECT_EQ(get(server.url(), options).error.code, ErrorCode::Ok) << limit;
    }
}

TEST(CprHttpClientTest, ReportsFailuresOfTheTransportAsValues) {
    for (auto const& [url, code] : std::vector<std::pair<std::string, ErrorCode>>{
             {"http://127.0.0.1:1/", ErrorCode::ConnectionFailure},
             {"http://" + std::string(64, 'a') + ".test/",
              ErrorCode::HostResolutionFailure},  // No look-up: the label is too long.
             {"http://127.0.0.1:99999/",
              ErrorCode::InvalidUrlFormat},  // libcurl has no text for it.
             {"proto://127.0.0.1/", ErrorCode::UnsupportedProtocol},
         }) {
        SCOPED_TRACE(url);
        auto const response = get(url);
        EXPECT_EQ(response.error.code, code);
        EXPECT_EQ(response.error.message.empty(), code == ErrorCode::InvalidUrlFormat);
        EXPECT_EQ(response.statusCode, 0);
    }
}

}  // namespace
}  // namespace Ostrel::Networking
