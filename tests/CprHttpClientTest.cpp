#include "Networking/Cpr/CprHttpClient.h"

#include <cctype>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include "Ostrel/Time/SteadyClock.h"
#include "examples/LocalServer.h"
#include "tests/Support/Operations.h"
#include "tests/Support/RawServer.h"

namespace Ostrel::Networking {
namespace {

using namespace std::string_literals;
using namespace Testing;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr auto OK = ErrorCode::Ok;
constexpr auto LATE = ErrorCode::OperationTimedOut;
constexpr auto TOO_MANY = ErrorCode::TooManyRedirects;

TEST(CprHttpClientTest, PerformsEveryOperation) {
    std::vector<std::string> requests = {"none"};
    RawServer server([&requests](Connection& connection) {
        requests.push_back(connection.readRequest());
        connection.send(
            "HTTP/1.1 404 Gone\r\nContent-Length: 4\r\n"
            "Set-Cookie: a=1; Path=/\r\nSet-Cookie: a=2; Path=/deep\r\n\r\n");
        if (requests.back().substr(0, 4) != "HEAD") {
            connection.send("body");
        }
    });
    auto request = requestFor(server.url() + "a/c?z=1&name=%20");
    request.url.addParameter("a&b\0"s, "c=d e\r\n\0"s);
    request.url.addParameter("e", "");
    request.url.setAnchor("top\0"s);
    request.headers = {{"X-Empty", ""}, {"X-Odd", "a:b \"c\" \t\x01\xff"}};
    request.cookies = {
        {"a\r\n", "1\0"s}, {"b", "\"q d\""}, {"c", ""}, {"d", "\"\n"}, {"e", "\n\""}};
    decltype(Response::headers)
        const headers = {{"Content-Length", "4"}, {"Set-Cookie", "a=1; Path=/"}};
    for (auto const& [name, method, call] : operations()) {
        SCOPED_TRACE(name);
        CprHttpClient client;
        auto const response = call(client, request, patient());

        // An error status is a completed transfer, and the first cookie of a name is kept.
        Response expected;
        expected.statusCode = 404;
        expected.body = method == "HEAD" ? "" : "body";
        expected.headers = headers;
        expected.cookies = {{"a", "1"}};
        expected.error.code = OK;
        expected.statusLine = "HTTP/1.1 404 Gone";
        expected.reason = "Gone";
        EXPECT_EQ(fieldsOf(response), fieldsOf(expected));
        for (auto const& text :
             {method + " /a/c?a%26b%00=c%3Dd%20e%0D%0A%00&e", "&name=%2520&z=1 HTTP/1.1\r\n"s,
              "\r\nX-Empty:\r\n"s, "\r\nX-Odd: a:b \"c\" \t\x01\xff\r\n"s,
              "\r\nCookie: a%0D%0A=1%00; b=\"q d\"; c=; d=%22%0A; e=%0A%22"s}) {
            EXPECT_THAT(requests.back(), HasSubstr(text));
        }
    }
}

TEST(CprHttpClientTest, PostsBytesAndForms) {
    std::vector<std::string> requests = {"none"};
    RawServer server(answering(EMPTY_OK, &requests));
    auto const sentBody = [&requests] {
        return requests.back().substr(requests.back().find("\r\n\r\n") + 4);
    };
    CprHttpClient client;
    auto request = requestFor(server.url());
    MultiPart const form{{{"z", "1", "a/b; c=d"},
                          {"a\xc3\xa4", std::string(2'000'000, 'x'), ""},
                          {"empty", "", "text/plain"},
                          {"z", "v\r\n--\r\n", ""}}};

    EXPECT_EQ(client.post(request, form, patient()).statusCode, 200);
    auto const boundary = sentBody().substr(0, sentBody().find("\r\n"));
    std::string expected;
    for (auto const& [name, value, contentType] : form.parts) {
        expected += boundary + "\r\nContent-Disposition: form-data; name=\"" + name + "\"\r\n" +
                    (contentType.empty() ? "" : "Content-Type: " + contentType + "\r\n") + "\r\n" +
                    value + "\r\n";
    }
    EXPECT_TRUE(sentBody() == expected + boundary + "--\r\n") << sentBody().substr(0, 300);
    EXPECT_EQ(client.post(request, MultiPart(), patient()).statusCode, 200);

    request.headers = {{"Content-Type", "application/octet-stream"}};
    for (auto const& body : {""s, "a\0b\r\n\r\n\xff"s}) {
        EXPECT_EQ(client.post(request, body, patient()).statusCode, 200);
        EXPECT_EQ(sentBody(), body);
        EXPECT_THAT(requests.back(), HasSubstr("\r\nContent-Type: application/octet-stream\r\n"));
    }
}

TEST(CprHttpClientTest, SendsNoCookieLineWithoutCookies) {
    std::vector<std::string> requests;
    RawServer server(answering(EMPTY_OK, &requests));
    EXPECT_EQ(get(server.url()).statusCode, 200);
    EXPECT_THAT(requests.at(0), Not(HasSubstr("Cookie")));
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
        bool follow;
        std::int32_t max;
        ErrorCode code;
        int statusCode;
    };
    for (auto const& row : {Row{false, 5, OK, 301}, Row{true, 3, OK, 200}, Row{true, -1, OK, 200},
                            Row{true, 2, TOO_MANY, 302}, Row{true, 0, TOO_MANY, 301}}) {
        SCOPED_TRACE(row.max);
        auto options = patient();
        options.followRedirects = row.follow;
        options.maxRedirects = row.max;

        auto const response = CprHttpClient().post(requestFor(server.url("/3")), "x", options);

        EXPECT_EQ(response.error.code, row.code);
        EXPECT_EQ(response.statusCode, row.statusCode);
        EXPECT_EQ(response.body, row.statusCode == 200 ? "end of POSTx" : "");
    }
}

TEST(CprHttpClientTest, KeepsCredentialsFromTheTargetOfARedirect) {
    std::vector<std::string> requests;
    RawServer other(answering(EMPTY_OK, &requests));
    auto const port = other.authority().substr(other.authority().find(':'));
    RawServer server(answering(MOVED + "http://localhost" + port + "/\r\n\r\n", &requests));
    EXPECT_EQ(get("http://u:p@" + server.authority(), following()).statusCode, 200);
    ASSERT_EQ(requests.size(), 2U);
    EXPECT_THAT(requests[0], HasSubstr("\r\nAuthorization: Basic dTpw\r\n"));
    EXPECT_THAT(requests[1], Not(HasSubstr("Authorization")));
}

TEST(CprHttpClientTest, UsesHostAndPortOfTheProxy) {
    std::vector<std::string> requests = {"none"};
    RawServer proxy(answering(EMPTY_OK, &requests));
    auto options = patient();
    options.proxy = "x://u:p@" + proxy.authority() + "/ignored?a=1";
    for (auto const* scheme : {"http", "HTTP"}) {
        EXPECT_EQ(get(scheme + "://host.test/x"s, options).statusCode, 200);
        EXPECT_THAT(requests.back(), HasSubstr("://host.test/x HTTP/1.1\r\n"));
        EXPECT_THAT(requests.back(), Not(HasSubstr("Authorization")));
    }
    RawServer target(answering(EMPTY_OK));
    options.proxy = "no URL";
    EXPECT_NE(get(target.url(), options).error.code, OK);
    EXPECT_EQ(target.connections(), 0) << "a proxy that is no URL was ignored";
}

std::string const LARGE_BODY(4'000'000, 'x');

TEST(CprHttpClientTest, CollectsABodyOrStreamsIt) {
    RawServer server(answering(okWith(LARGE_BODY)));
    EXPECT_TRUE(get(server.url()).body == LARGE_BODY);

    std::string received;
    auto options = patient();
    options.onData = [&received](std::string const& chunk) { received += chunk; };
    auto const response = get(server.url(), options);
    EXPECT_EQ(response.statusCode, 200) << response.error.message;
    EXPECT_EQ(response.body, "");
    EXPECT_TRUE(received == LARGE_BODY);
}

TEST(CprHttpClientTest, ReportsProgress) {
    RawServer server(answering(okWith(LARGE_BODY)));
    auto reports = 0;
    auto options = patient();
    options.onProgress = [&reports](std::int64_t, std::int64_t total) {
        EXPECT_EQ(total, static_cast<std::int64_t>(LARGE_BODY.size()));
        ++reports;
    };
    EXPECT_EQ(get(server.url(), options).error.code, OK);
    EXPECT_GT(reports, 0);
}

TEST(CprHttpClientTest, IsCancelledWhileItStreamsCollectsOrWaits) {
    RawServer server(answering(okWith(LARGE_BODY)));
    std::size_t received = 0;
    auto streaming = patient();
    streaming.onData = [&received](std::string const& chunk) { received += chunk.size(); };
    streaming.isCancelled = [&received] { return received > 100'000; };
    EXPECT_EQ(get(server.url(), streaming).error.code, ErrorCode::RequestCancelled);
    EXPECT_LT(received, LARGE_BODY.size() / 2);

    auto cancelled = patient();
    cancelled.isCancelled = [] { return true; };
    EXPECT_EQ(get(server.url(), cancelled).error.code, ErrorCode::RequestCancelled);
    RawServer stalling(endless(""));
    EXPECT_EQ(get(stalling.url(), cancelled).error.code, ErrorCode::RequestCancelled);
}

TEST(CprHttpClientTest, EndsWhenOutOfTimeOrTooSlow) {
    auto const slow = [](Connection& connection) {
        (void)connection.readRequest();
        for (auto const& byte : EMPTY_OK) {
            connection.send({&byte, 1});
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    };
    auto const stalling = endless("HTTP/1.1 200 OK\r\n\r\n");
    struct Row {
        RawServer::Handler handler;
        std::int32_t lowSpeedLimit, lowSpeedTime;
        std::int64_t timeout;
        ErrorCode code;
    };
    auto const start = std::chrono::steady_clock::now();
    for (auto const& row :
         {Row{stalling, 0, 0, 50'999, LATE}, Row{stalling, 500, 1, patient().timeout, LATE},
          // Half a pair and a timeout below a millisecond are none.
          Row{slow, 1 << 30, 0, 999, OK}, Row{slow, -1, 1, -1500, OK}}) {
        SCOPED_TRACE(row.timeout);
        RawServer server(row.handler);
        Options options;
        options.lowSpeedLimit = row.lowSpeedLimit;
        options.lowSpeedTime = row.lowSpeedTime;
        options.timeout = row.timeout;
        EXPECT_EQ(get(server.url(), options).error.code, row.code);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(15));
}

TEST(CprHttpClientTest, ReportsAPortThatIsTooLargeAsAValue) {
    EXPECT_EQ(get("http://127.0.0.1:99999/").error.code, ErrorCode::InvalidUrlFormat);
}

/// Closes the connection, which resets it if the peer has more to say.
void hangUp(Connection& connection) { (void)connection.readSome(); }

TEST(EnvironmentTest, ProxyVariablesHaveNoEffect) {
    RawServer trap(answering(EMPTY_OK));
    RawServer target(answering(MOVED + "/\r\n\r\n"));
    RawServer noTls(hangUp);
    std::vector<std::string> requests = {"none"};
    RawServer proxy(answering(MOVED + "http://other.test/\r\n\r\n", &requests));
    for (auto const* name : {"http_proxy", "https_proxy", "ALL_PROXY", "no_proxy", "NO_PROXY"}) {
        SCOPED_TRACE(name);
        setenv(name, std::tolower(name[0]) == 'n' ? "*" : trap.url().c_str(), 1);
        auto options = following();
        EXPECT_EQ(get(target.url(), options).error.code, TOO_MANY);
        EXPECT_NE(get("https://" + noTls.authority(), options).error.code, OK);
        options.proxy = proxy.url();
        EXPECT_EQ(get("http://host.test/", options).error.code, TOO_MANY);
        EXPECT_THAT(requests.back(), HasSubstr("GET http://other.test/ HTTP/1.1\r\n"));
        (void)get("https://host.test/", options);
        EXPECT_THAT(requests.back(), HasSubstr("CONNECT host.test:443 HTTP/1.1\r\n"));
        unsetenv(name);
    }
    EXPECT_EQ(trap.connections(), 0);
}

TEST(EnvironmentTest, KeepsItsSignalHandlers) {
    // Left to itself, libcurl ignores SIGPIPE during a transfer, and threads restore each other's
    // handlers.
    RawServer server(answering(EMPTY_OK));
    auto* const own = +[](int) {};
    std::signal(SIGPIPE, own);
    auto options = patient();
    options.isCancelled = [&] {
        auto* const current = std::signal(SIGPIPE, own);
        EXPECT_EQ(current, own);
        return true;
    };
    EXPECT_EQ(get(server.url(), options).error.code, ErrorCode::RequestCancelled);
    std::signal(SIGPIPE, SIG_IGN);
}

TEST(ProtocolTest, IsHttpFromTheFirstRequestToTheLastRedirect) {
    RawServer target(answering(EMPTY_OK));
    for (auto const& url : {"file://localhost/etc"s, "ftp://" + target.authority() + "/"}) {
        RawServer redirecting(answering(MOVED + url + "\r\n\r\n"));
        for (auto const& [response, statusCode] :
             {std::pair(get(url, following()), 0), {get(redirecting.url(), following()), 302}}) {
            EXPECT_EQ(response.error.code, ErrorCode::UnsupportedProtocol) << url;
            EXPECT_EQ(response.statusCode, statusCode);
        }
    }
    EXPECT_EQ(target.connections(), 0);
    EXPECT_EQ(get("hTtP://" + target.authority()).statusCode, 200);
}

TEST(RefusalTest, RefusesWhatHttpCannotCarry) {
    RawServer server(answering(EMPTY_OK));
    struct Row {
        std::string message;
        Request request;
        std::vector<MultiPart::Part> parts = {};
        std::string proxy = {};
    };
    auto const url = server.url();
    std::string const huge(1 << 20, 'x');
    std::string const half(1 << 19, 'x');
    auto const header = [&url](std::string const& name, std::string const& value) {
        return Request{url, {{"A", "fit"}, {name, value}, {"Z", "fit"}}, {}};
    };
    auto const plain = requestFor(url);
    auto options = following();
    options.onData = [](std::string const&) { ADD_FAILURE(); };
    options.isCancelled = [] { return ADD_FAILURE(), true; };
    for (auto const& row : std::vector<Row>{
             {"", {"no URL"s, {{"", ""}}, {}}},
             {"URL contains NUL", {url + "a\0b"s, {}, {}}},
             {"URL is too long", requestFor(url + huge)},
             {"value of parameter b is too long", requestFor(url + "a?b=" + huge)},
             {"header name is not a token", header("", "v")},
             {"header name is not a token", header("X\0Y"s, "v")},
             {"header name is not a token", header("X:", "v")},
             {"header name is not a token", header("X\xe4", "v")},
             {"header name is too long", header(huge, "v")},
             {"value of header X contains NUL", header("X", "v\0w"s)},
             {"value of header X contains a line break", header("X", "v\r\nY: 1")},
             {"value of header X is blank", header("X", " \t")},
             {"cookie name is too long", {url, {}, {{huge, "v"}}}},
             {"request head is too long", {url, {{"X", half}}, {{"c", half}}}},
             {"request head is too long", {url, {}, {{"c", std::string(400'000, ' ')}}}},
             {"value of cookie c contains a line break",
              {url, {}, {{"a", "fit"}, {"c", "\"v\r\nY: 1\""}}}},
             {"proxy contains NUL", plain, {}, url + "\0"s},
             {"proxy is too long", plain, {}, "http://" + huge + ":80"},
             {"part name contains a line break", plain, {{"ok", ""}, {"n\r\n", ""}}},
             {"content type of part n contains a line break", plain, {{"n", "", "a/b\nX: 1"}}},
             {"value of part n contains NUL", plain, {{"n", "v\0w"s, ""}}},
         }) {
        options.proxy = row.proxy;
        auto const response = CprHttpClient().post(row.request, MultiPart{row.parts}, options);
        EXPECT_EQ(response.error.code, ErrorCode::NotPerformed);
        EXPECT_EQ(response.error.message, row.message);
    }
    EXPECT_EQ(server.connections(), 0);
}

int openDescriptors() {
    int count = 0;
    for (int descriptor = 0; descriptor < 256; ++descriptor) {
        count += fcntl(descriptor, F_GETFD) != -1 ? 1 : 0;
    }
    return count;
}

TEST(HostileServerTest, EndsInAValueWithinTheTimeoutAndLeavesNoDescriptorBehind) {
    constexpr auto BROKEN = ErrorCode::InternalError;
    constexpr auto RECEIVE = ErrorCode::NetworkReceiveError;
    constexpr auto UNKNOWN = ErrorCode::UnknownError;
    auto const ok = "HTTP/1.1 200 OK\r\n"s;
    // What the system opens in a first call and keeps is not counted.
    (void)get("https://" + RawServer(hangUp).authority());
    struct Row {
        std::string name;
        RawServer::Handler handler;
        std::vector<ErrorCode> outcomes;
        std::string scheme = "http";
    };
    for (auto const& [name, handler, outcomes, scheme] : std::vector<Row>{
             {"nothing", hangUp, {ErrorCode::EmptyResponse}},
             {"garbage without end", endless("", "\xfe"), {ErrorCode::UnsupportedProtocol, BROKEN}},
             // Unknown where libcpr was built for a libcurl without a limit on headers.
             {"headers without end", endless(ok, "X: 1\r\n"), {BROKEN, UNKNOWN, RECEIVE}},
             {"stall in the head", endless(ok + "X: 1\r\nY"), {LATE}},
             {"stall in the handshake", endless("\x16\x03\x03\x40"), {LATE}, "https"},
             {"no handshake",
              endless("HTTP/1.1 400 Bad Request\r\n\r\n"),
              {ErrorCode::SslConnectError},
              "https"},
         }) {
        SCOPED_TRACE(name);
        auto const before = openDescriptors();
        std::optional<RawServer> server(std::in_place, handler);
        auto options = following();
        if (outcomes.back() == LATE) {
            options.timeout = 100'000;
        }

        auto const response = get(scheme + "://" + server->authority(), options);

        EXPECT_THAT(outcomes, ::testing::Contains(response.error.code)) << response.error.message;
        server.reset();
        EXPECT_EQ(openDescriptors(), before);
    }
}

TEST(HostileServerTest, EndsInTimeWhileABodyDecompresses) {
    // 128 KiB of zeros. Without a limit of our own, all would be decompressed and delivered without
    // a look at the clock, as they arrive in one piece.
    auto const body =
        "\x1f\x8b\x08\0\0\0\0\0\2\3\xed\xc1\x31\1\0\0\0\xc2\xa0\xf5\x4f\xed\x61\r\xa0"s +
        std::string(127, '\0') + "\x6e\xcd\xcd\xe8\x7e\0\0\2\0"s;
    RawServer server(answering(okWith(body, "Content-Encoding: gzip\r\n")));
    auto options = patient();
    options.timeout = 200'000;
    auto const end = Time::SteadyClock().Now() + options.timeout;
    options.onData = [end](std::string const&) {
        while (Time::SteadyClock().Now() <= end) {
        }
    };

    auto const response = get(server.url(), options);

    EXPECT_EQ(response.error.code, LATE) << response.error.message;
}

TEST(HostileServerTest, LeavesWhatArrivedBeforeAFailure) {
    RawServer server(answering("HTTP/1.1 200 OK\r\nContent-Length: 100\r\nX: 1\r\n\r\nbody"));
    auto const response = get(server.url());
    EXPECT_EQ(response.error.code, ErrorCode::InternalError);
    EXPECT_NE(response.error.message, "");
    EXPECT_EQ(response.statusCode, 200);
    EXPECT_EQ(response.headers.at("X"), "1");
    EXPECT_EQ(response.body, "body");
}

}  // namespace
}  // namespace Ostrel::Networking
