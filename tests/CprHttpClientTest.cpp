#include "Networking/Cpr/CprHttpClient.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <future>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "examples/LocalServer.h"
#include "tests/Support/Operations.h"
#include "tests/Support/RawServer.h"

namespace Ostrel::Networking {
namespace {

using namespace Testing;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::Pair;

TEST(CprHttpClientTest, SendsUrlHeadersAndCookiesWithEveryOperation) {
    LocalServer server([](auto const&, auto& response) {
        response.set_header("Set-Cookie", "sid=1; Path=/");
        response.set_header("X-Answer", "42");
        response.set_content("body", "text/plain");
    });
    auto request = requestFor(server.url("/a/c?z=1&name=%20#top"));
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
        EXPECT_THAT(received.get_header_value("Cookie"), HasSubstr("a=\"quoted\"; b=2 3"));
    }
}

TEST(CprHttpClientTest, PostsBytesAndForms) {
    std::vector<std::string> requests;
    RawServer server(answering(EMPTY_OK, &requests));
    CprHttpClient client;
    auto request = requestFor(server.url());
    auto const sentBody = [&requests] {
        return requests.back().substr(requests.back().find("\r\n\r\n") + 4);
    };

    (void)client.post(request, "", patient());
    EXPECT_THAT(requests.back(), HasSubstr("\r\nContent-Length: 0\r\n"));
    request.headers = {{"Content-Type", "application/octet-stream"}};
    std::string const body("a\0b\r\n\r\n\xff", 8);
    (void)client.post(request, body, patient());
    EXPECT_EQ(sentBody(), body);
    EXPECT_THAT(requests.back(), HasSubstr("\r\nContent-Type: application/octet-stream\r\n"));

    request.headers.clear();
    MultiPart const form{{{"z", "1", "a/b; c=d"},
                          {"a", std::string(100'000, 'x'), ""},
                          {"empty", "", "text/plain"},
                          {"z", "v\r\n--\r\n", ""}}};
    (void)client.post(request, form, patient());
    auto const start = requests.back().find("boundary=") + 9;
    auto const boundary =
        "--" + requests.back().substr(start, requests.back().find("\r\n", start) - start);
    std::string expected;
    for (auto const& [name, value, contentType] : form.parts) {
        expected += boundary + "\r\nContent-Disposition: form-data; name=\"" + name + "\"\r\n" +
                    (contentType.empty() ? "" : "Content-Type: " + contentType + "\r\n") + "\r\n" +
                    value + "\r\n";
    }
    EXPECT_TRUE(sentBody() == expected + boundary + "--\r\n") << sentBody().substr(0, 300);
    EXPECT_EQ(client.post(request, MultiPart(), patient()).error.code, ErrorCode::Ok);
}

TEST(CprHttpClientTest, FollowsRedirectsAsTold) {
    LocalServer server([](auto const& request, auto& response) {
        auto const hop = std::stoi(request.path.substr(1));
        if (hop > 0) {
            response.set_redirect("/" + std::to_string(hop - 1), 301 + hop % 3);
        } else {
            response.status = 404;  // A completed transfer like any other.
            response.set_content("end of " + request.method + request.body, "text/plain");
        }
    });
    struct Row {
        std::string name;
        bool follow;
        std::int32_t max;
        ErrorCode code;
        int statusCode;
        std::size_t requests;
    };
    for (auto const& row : std::vector<Row>{
             {"not followed", false, 5, ErrorCode::Ok, 301, 1},
             {"followed", true, 5, ErrorCode::Ok, 404, 4},
             {"as many as allowed", true, 3, ErrorCode::Ok, 404, 4},
             {"too many", true, 2, ErrorCode::TooManyRedirects, 302, 3},
             {"none allowed", true, 0, ErrorCode::TooManyRedirects, 301, 1},
             {"no limit", true, -1, ErrorCode::Ok, 404, 4},
         }) {
        SCOPED_TRACE(row.name);
        auto const before = server.requests().size();
        auto options = patient();
        options.followRedirects = row.follow;
        options.maxRedirects = row.max;

        auto const response = CprHttpClient().post(requestFor(server.url("/3")), "x", options);

        EXPECT_EQ(response.error.code, row.code);
        EXPECT_EQ(response.statusCode, row.statusCode);
        EXPECT_EQ(response.body, row.statusCode == 404 ? "end of POSTx" : "");
        EXPECT_EQ(server.requests().size() - before, row.requests);
    }
}

TEST(CprHttpClientTest, KeepsCredentialsFromTheTargetOfARedirect) {
    std::vector<std::string> first;
    std::vector<std::string> second;
    RawServer other(answering(EMPTY_OK, &second));
    RawServer server(answering(
        "HTTP/1.1 302 Found\r\nContent-Length: 0\r\nLocation: " + other.url() + "\r\n\r\n",
        &first));
    auto options = patient();
    options.followRedirects = true;
    options.maxRedirects = 1;
    EXPECT_EQ(get("http://u:p@" + server.authority() + "/", options).statusCode, 200);
    EXPECT_THAT(first.at(0), HasSubstr("\r\nAuthorization: Basic dTpw\r\n"));
    EXPECT_THAT(second.at(0), Not(HasSubstr("Authorization")));
}

TEST(CprHttpClientTest, UsesHostAndPortOfTheProxy) {
    std::vector<std::string> requests;
    RawServer proxy(answering(EMPTY_OK, &requests));
    auto options = patient();
    options.proxy = "x://u:p@" + proxy.authority() + "/ignored?a=1";
    for (auto const* scheme : {"http", "HTTP"}) {
        EXPECT_EQ(get(scheme + std::string("://host.test/x"), options).statusCode, 200);
        EXPECT_THAT(requests.back(), HasSubstr("://host.test/x HTTP/1.1\r\n"));
        EXPECT_THAT(requests.back(), Not(HasSubstr("Authorization")));
    }
    (void)get("https://host.test/", options);
    EXPECT_THAT(requests.back(), HasSubstr("CONNECT host.test:443 HTTP/1.1\r\n"));

    RawServer target(answering(EMPTY_OK));
    options.proxy = "no URL";
    EXPECT_NE(get(target.url(), options).error.code, ErrorCode::Ok);
    EXPECT_EQ(target.connections(), 0) << "a proxy that is no URL was ignored";
}

TEST(CprHttpClientTest, KeepsTheFirstOfCookiesWithOneName) {
    RawServer server(
        answering("HTTP/1.1 200 OK\r\nContent-Length: 0\r\nSet-Cookie: a=1; Path=/\r\n"
                  "Set-Cookie: a=2; Path=/deep\r\nSet-Cookie: b=3\r\n\r\n"));
    EXPECT_THAT(get(server.url()).cookies, ElementsAre(Pair("a", "1"), Pair("b", "3")));
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

/// Sends a body without end, at most 50 bytes per second.
void trickle(Connection& connection) {
    (void)connection.readRequest();
    (void)connection.send("HTTP/1.1 200 OK\r\n\r\n");
    while (connection.send("x")) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

void stall(Connection& connection) {
    while (!connection.readSome().empty()) {
    }
}

TEST(CprHttpClientTest, EndsWhenOutOfTimeOrTooSlow) {
    struct Row {
        std::function<void(Connection&)> handler;
        std::int32_t lowSpeedLimit;
        std::int32_t lowSpeedTime;
        std::int64_t timeout;
    };
    auto const start = std::chrono::steady_clock::now();
    std::vector<std::future<ErrorCode>> outcomes;
    for (auto const& row : std::vector<Row>{{stall, 0, 0, 50'999},
                                            {stall, 1 << 29, 1, patient().timeout},
                                            {trickle, 200, 1, patient().timeout}}) {
        outcomes.push_back(std::async(std::launch::async, [row] {
            RawServer server(row.handler);
            Options options;
            options.lowSpeedLimit = row.lowSpeedLimit;
            options.lowSpeedTime = row.lowSpeedTime;
            options.timeout = row.timeout;
            return get(server.url(), options).error.code;
        }));
    }
    for (auto& outcome : outcomes) {
        EXPECT_EQ(outcome.get(), ErrorCode::OperationTimedOut);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(15));
}

TEST(CprHttpClientTest, IgnoresHalfALowSpeedPairAndATimeoutBelowAMillisecond) {
    RawServer server([](Connection& connection) {
        (void)connection.readRequest();
        std::this_thread::sleep_for(std::chrono::milliseconds(30));  // Later than any such timeout.
        (void)connection.send(EMPTY_OK);
    });
    struct Row {
        std::int32_t limit, time;
        std::int64_t timeout;
    };
    for (auto const& row : {Row{1 << 30, 0, 0}, Row{0, 1, 999}, Row{-1, 1, -1500}}) {
        Options options;
        options.lowSpeedLimit = row.limit;
        options.lowSpeedTime = row.time;
        options.timeout = row.timeout;
        EXPECT_EQ(get(server.url(), options).error.code, ErrorCode::Ok) << row.timeout;
    }
}

TEST(CprHttpClientTest, ReportsFailuresOfTheTransportAsValues) {
    std::vector<std::pair<std::string, ErrorCode>> const rows = {
        {"http://127.0.0.1:1/", ErrorCode::ConnectionFailure},
        {"http://" + std::string(64, 'a') + ".test/", ErrorCode::HostResolutionFailure},
        {"http://127.0.0.1:99999/", ErrorCode::InvalidUrlFormat},
        {"proto://127.0.0.1/", ErrorCode::UnsupportedProtocol},
    };
    for (auto const& [url, code] : rows) {
        auto const response = get(url);
        EXPECT_EQ(response.error.code, code) << url;
        EXPECT_EQ(response.statusCode, 0) << url;
    }
    EXPECT_NE(get(rows[0].first).error.message, "");
}

}  // namespace
}  // namespace Ostrel::Networking
