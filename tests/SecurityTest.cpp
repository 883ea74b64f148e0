// What a hostile environment, caller or server can do to a transfer.

#include <csignal>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>

#include "Networking/Cpr/CprHttpClient.h"
#include "tests/Support/Operations.h"
#include "tests/Support/RawServer.h"

namespace Ostrel::Networking {
namespace {

using namespace std::string_literals;
using namespace Testing;
using ::testing::HasSubstr;

Options following() {
    auto options = patient();
    options.followRedirects = true;
    options.maxRedirects = 1;
    return options;
}

TEST(EnvironmentTest, DivertsNothing) {
    RawServer trap(answering(EMPTY_OK));
    RawServer target(answering(MOVED + "/\r\n\r\n"));
    RawServer noTls([](Connection& connection) { (void)connection.readSome(); });
    std::vector<std::string> requests;
    RawServer proxy(answering(MOVED + "http://other.test/\r\n\r\n", &requests));
    for (auto const& [name, value] :
         std::vector<std::pair<std::string, std::string>>{{"http_proxy", trap.url()},
                                                          {"https_proxy", trap.url()},
                                                          {"ALL_PROXY", trap.url()},
                                                          {"no_proxy", "*"},
                                                          {"NO_PROXY", "host.test,other.test"}}) {
        SCOPED_TRACE(name);
        setenv(name.c_str(), value.c_str(), 1);
        auto options = following();
        EXPECT_EQ(get(target.url(), options).error.code, ErrorCode::TooManyRedirects);
        EXPECT_NE(get("https://" + noTls.authority(), options).error.code, ErrorCode::Ok);
        options.proxy = proxy.url();
        EXPECT_EQ(get("http://host.test/", options).error.code, ErrorCode::TooManyRedirects);
        EXPECT_THAT(requests.back(), HasSubstr("GET http://other.test/ HTTP/1.1\r\n"));
        (void)get("https://host.test/", options);
        EXPECT_THAT(requests.back(), HasSubstr("CONNECT host.test:443 HTTP/1.1\r\n"));
        unsetenv(name.c_str());
    }
    EXPECT_EQ(trap.connections(), 0);
}

TEST(EnvironmentTest, KeepsItsSignalHandlers) {
    // Left to itself, libcurl ignores SIGPIPE during a transfer, and threads restore each other's
    // handlers.
    RawServer server(answering(EMPTY_OK));
    auto* const own = +[](int) {};
    auto* const former = std::signal(SIGPIPE, own);
    auto options = following();
    int polls = 0;
    options.isCancelled = [&] {
        struct sigaction current {};
        sigaction(SIGPIPE, nullptr, &current);
        EXPECT_EQ(current.sa_handler, own);
        return ++polls, false;
    };
    EXPECT_EQ(get(server.url(), options).statusCode, 200);
    EXPECT_GT(polls, 0);
    std::signal(SIGPIPE, former);
}

TEST(ProtocolTest, IsHttpFromTheFirstRequestToTheLastRedirect) {
    RawServer target(answering(EMPTY_OK));
    for (auto const& url : {"file://localhost/etc"s, "ftp://" + target.authority() + "/",
                            "dict://" + target.authority() + "/"}) {
        RawServer redirecting(answering(MOVED + url + "\r\n\r\n"));
        for (auto const& [response, statusCode] :
             {std::pair(get(url, following()), 0), {get(redirecting.url(), following()), 302}}) {
            EXPECT_EQ(response.error.code, ErrorCode::UnsupportedProtocol) << url;
            EXPECT_EQ(response.statusCode, statusCode);
            EXPECT_EQ(response.body, "");
        }
    }
    EXPECT_EQ(target.connections(), 0);
    EXPECT_EQ(get("hTtP://" + target.authority()).statusCode, 200);
}

TEST(RefusalTest, KeepsFromTheWireWhatItCannotCarry) {
    RawServer server(answering(EMPTY_OK));
    struct Row {
        std::string message;
        Request request;
        std::vector<MultiPart::Part> parts = {};
        std::string proxy = {};
    };
    auto const url = server.url();
    auto const header = [&url](std::string const& name, std::string const& value) {
        return Request{url, {{"A", "fit"}, {name, value}, {"Z", "fit"}}, {}};
    };
    auto const cookie = [&url](std::string const& value) {
        return Request{url, {}, {{"a", "\"fit\""}, {"c", value}, {"z", "\"fit\""}}};
    };
    auto const plain = requestFor(url);
    auto options = following();
    options.onData = [](std::string const&) { ADD_FAILURE(); };
    options.isCancelled = [] { return ADD_FAILURE(), true; };
    for (auto const& row : std::vector<Row>{
             {"", {"no URL"s, {{"", ""}}, {}}},
             {"URL contains NUL", {url + "a\0b"s, {}, {}}},
             {"URL contains NUL", {"http://u\0@"s + server.authority(), {}, {}}},
             {"header name is empty", header("", "v")},
             {"header name contains NUL", header("X\0Y"s, "v")},
             {"header name contains a line break", header("X\rY", "v")},
             {"header name contains a line break", header("X\nY: 1", "v")},
             {"header name contains a colon", header("X:", "v")},
             {"header name contains a space", header("X ", "v")},
             {"value of header X contains NUL", header("X", "v\0w"s)},
             {"value of header X contains a line break", header("X", "v\r\nY: 1")},
             {"value of header X contains a line break", header("X", "v\n")},
             {"value of cookie c contains a line break", cookie("\"v\r\nY: 1\"")},
             {"value of cookie c contains NUL", cookie("\"\0\""s)},
             {"proxy contains NUL", plain, {}, url + "\0"s},
             {"part name contains a line break", plain, {{"ok", "", ""}, {"n\r\n", "", ""}}},
             {"part name contains NUL", plain, {{"\0n"s, "", ""}, {"ok", "", ""}}},
             {"content type of part n contains a line break", plain, {{"n", "", "a/b\nX: 1"}}},
             {"content type of part n contains NUL", plain, {{"n", "", "a\0b"s}}},
             {"value of part n contains NUL", plain, {{"n", "v\0w"s, ""}}},
         }) {
        options.proxy = row.proxy;
        auto const response = CprHttpClient().post(row.request, MultiPart{row.parts}, options);
        EXPECT_EQ(response.error.code, ErrorCode::NotPerformed);
        EXPECT_EQ(response.error.message, row.message);
        EXPECT_EQ(response.statusCode, 0);
    }
    EXPECT_EQ(server.connections(), 0);
}

RawServer::Handler resetting(std::string const& text) {
    return [text](Connection& connection) {
        (void)connection.readSome();
        connection.send(text);
        connection.reset();
    };
}

TEST(HostileServerTest, EndsInAValueWithinTheTimeout) {
    constexpr auto OK = ErrorCode::Ok;
    constexpr auto EMPTY = ErrorCode::EmptyResponse;
    constexpr auto INTERNAL = ErrorCode::InternalError;
    constexpr auto RECEIVE = ErrorCode::NetworkReceiveError;
    constexpr auto SEND = ErrorCode::NetworkSendFailure;
    constexpr auto LATE = ErrorCode::OperationTimedOut;
    constexpr auto NO_TLS = ErrorCode::SslConnectError;
    auto const ok = "HTTP/1.1 200 OK\r\n"s;
    std::string cookies;
    while (cookies.size() < 40'000) {
        cookies += "Set-Cookie: a=1\r\nSet-Cookie: b=2\r\nSet-Cookie: ;;\r\nSet-Cookie: =\t\r\n";
    }
    struct Row {
        std::string name;
        RawServer::Handler handler;
        std::vector<ErrorCode> outcomes;
        std::string scheme = "http";
    };
    for (auto const& [name, handler, outcomes, scheme] : std::vector<Row>{
             {"nothing", answering(""), {EMPTY}},
             {"garbage without end", endless("", "\xfe"), {ErrorCode::UnsupportedProtocol}},
             {"headers without end", endless(ok, "X: 1\r\n"), {INTERNAL, RECEIVE, LATE}},
             {"many odd cookies", answering(ok + cookies + "\r\n"), {OK}},
             {"no gzip", answering(ok + "Content-Encoding: gzip\r\n\r\nbody"), {INTERNAL}},
             {"redirect to itself", answering(MOVED + "/\r\n\r\n"), {ErrorCode::TooManyRedirects}},
             {"stall in the head", endless(ok + "X: 1\r\nY"), {LATE}},
             {"stall in the handshake", endless("\x16\x03\x03\x40"), {LATE}, "https"},
             {"no handshake", endless("HTTP/1.1 400 Bad Request\r\n\r\n"), {NO_TLS}, "https"},
             {"reset in the body", resetting(ok + "Content-Length: 9\r\n\r\n"), {RECEIVE}},
             {"reset in the upload", resetting(""), {SEND, RECEIVE, EMPTY}},
         }) {
        SCOPED_TRACE(name);
        RawServer server(handler);
        auto options = following();
        if (outcomes.back() == LATE) {
            options.timeout = 100'000;
        }
        auto const request = requestFor(scheme + "://" + server.authority() + "/");
        std::string const sent(name == "reset in the upload" ? 8 << 20 : 0, 'x');

        auto const response = CprHttpClient().post(request, sent, options);

        EXPECT_THAT(outcomes, ::testing::Contains(response.error.code)) << response.error.message;
        EXPECT_LE(response.cookies.size(), 2U);
    }
}

TEST(HostileServerTest, CannotTakeBackWhatItSentBeforeAFailure) {
    RawServer server(answering("HTTP/1.1 200 OK\r\nContent-Length: 100\r\nX: 1\r\n\r\nbody"));
    auto const response = get(server.url());
    EXPECT_EQ(response.error.code, ErrorCode::InternalError);
    EXPECT_NE(response.error.message, "");
    EXPECT_EQ(response.statusCode, 200);
    EXPECT_EQ(response.headers.at("X"), "1");
    EXPECT_EQ(response.body, "body");
}

int openDescriptors() {
    int count = 0;
    for (int descriptor = 0; descriptor < 4096; ++descriptor) {
        count += fcntl(descriptor, F_GETFD) >= 0;
    }
    return count;
}

TEST(HostileServerTest, LeavesNoDescriptorsBehind) {
    RawServer answer(answering(EMPTY_OK));
    RawServer reset(resetting(""));
    RawServer redirect(answering(MOVED + "/\r\n\r\n"));
    auto const before = openDescriptors();
    for (int round = 0; round < 20; ++round) {
        for (auto const* server : {&answer, &reset, &redirect}) {
            (void)get(server->url(), following());
        }
    }
    EXPECT_LT(openDescriptors(), before + 20);  // A server may be closing its side still.
}

}  // namespace
}  // namespace Ostrel::Networking
