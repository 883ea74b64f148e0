// What a hostile environment, caller or server can do to a transfer.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <arpa/inet.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include "Networking/Cpr/CprHttpClient.h"
#include "tests/Support/Operations.h"
#include "tests/Support/RawServer.h"

namespace Ostrel::Networking {
namespace {

using namespace std::string_literals;
using Testing::answering;
using ::testing::AnyOf;
using Testing::Connection;
using ::testing::Contains;
using ::testing::HasSubstr;
using Testing::operations;
using Testing::RawServer;

auto const EMPTY_OK = "HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n"s;

Options patient() {
    Options options;
    options.timeout = 20'000'000;
    options.followRedirects = true;
    options.maxRedirects = 5;
    return options;
}

Response get(std::string const& url, Options const& options = patient()) {
    Request request;
    request.url = url;
    return CprHttpClient().get(request, options);
}

std::string repeated(std::string const& piece, std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += piece;
    }
    return text;
}

/// Answers with `text`, then with `piece` for as long as the peer takes it.
std::function<void(Connection&)> endless(std::string const& text, std::string const& piece) {
    return [text, block = repeated(piece, 1 + 1024 / piece.size())](Connection& connection) {
        connection.readRequest();
        connection.send(text);
        while (connection.send(block)) {
        }
    };
}

/// Answers with `text` as soon as the peer has said something, then says no more.
std::function<void(Connection&)> stalling(std::string const& text) {
    return [text](Connection& connection) {
        (void)connection.readSome();
        connection.send(text);
        while (!connection.readSome().empty()) {
        }
    };
}

std::function<void(Connection&)> resetting(std::string const& text) {
    return [text](Connection& connection) {
        (void)connection.readSome();
        connection.send(text);
        connection.reset();
    };
}

/// Sets a variable of the environment for its own life.
class Variable {
public:
    Variable(std::string name, std::string const& value) : name_(std::move(name)) {
        setenv(name_.c_str(), value.c_str(), 1);
    }
    ~Variable() { unsetenv(name_.c_str()); }
    Variable(Variable const&) = delete;
    Variable& operator=(Variable const&) = delete;

private:
    std::string name_;
};

TEST(EnvironmentTest, DivertsNothing) {
    RawServer trap(answering("HTTP/1.1 200 OK\r\n\r\ntrapped"));
    RawServer target(answering(EMPTY_OK));
    RawServer tlsTarget(stalling("no TLS"));
    for (auto const* name : {"http_proxy", "HTTP_PROXY", "Http_Proxy", "https_proxy", "HTTPS_PROXY",
                             "all_proxy", "ALL_PROXY", "All_Proxy"}) {
        SCOPED_TRACE(name);
        Variable const variable(name, trap.url());
        EXPECT_EQ(get(target.url()).statusCode, 200);
        EXPECT_EQ(get("https://" + tlsTarget.authority() + "/").error.code,
                  ErrorCode::SslConnectError);
    }
    EXPECT_EQ(target.connections(), 8);
    EXPECT_EQ(tlsTarget.connections(), 8);
    EXPECT_EQ(trap.connections(), 0);
}

TEST(EnvironmentTest, LeavesTheProxyOfTheCall) {
    std::vector<std::string> requests;
    RawServer proxy(
        answering("HTTP/1.1 302 Found\r\nLocation: http://other.test/\r\n"
                  "Content-Length: 0\r\n\r\n",
                  &requests));
    RawServer trap(answering(EMPTY_OK));
    auto options = patient();
    options.proxy = proxy.url();
    options.maxRedirects = 1;
    for (auto const* name : {"no_proxy", "NO_PROXY", "http_proxy", "ALL_PROXY"}) {
        for (auto const& value : {"*"s, "host.test,other.test"s, trap.url()}) {
            SCOPED_TRACE(name + " "s + value);
            Variable const variable(name, value);
            requests.clear();
            EXPECT_EQ(get("http://host.test/", options).error.code, ErrorCode::TooManyRedirects);
            ASSERT_EQ(requests.size(), 2U);
            EXPECT_THAT(requests[0], HasSubstr("GET http://host.test/ HTTP/1.1\r\n"));
            EXPECT_THAT(requests[1], HasSubstr("GET http://other.test/ HTTP/1.1\r\n"));
            (void)get("https://host.test/", options);
            ASSERT_EQ(requests.size(), 3U);
            EXPECT_THAT(requests[2], HasSubstr("CONNECT host.test:443 HTTP/1.1\r\n"));
        }
    }
    EXPECT_EQ(trap.connections(), 0);
}

TEST(EnvironmentTest, KeepsItsSignalHandlers) {
    // libcurl, if it is let, ignores SIGPIPE while it transfers, and threads restore each other's
    // exchange.
    RawServer server(answering(EMPTY_OK));
    auto* const own = +[](int) {};
    auto* const former = signal(SIGPIPE, own);
    auto options = patient();
    int polls = 0;
    options.isCancelled = [&] {
        struct sigaction current {};
        sigaction(SIGPIPE, nullptr, &current);
        EXPECT_EQ(current.sa_handler, own);
        return ++polls, false;
    };
    EXPECT_EQ(get(server.url(), options).statusCode, 200);
    EXPECT_GT(polls, 0);
    signal(SIGPIPE, former);
}

TEST(ProtocolTest, IsHttpFromTheFirstRequestToTheLastRedirect) {
    RawServer target(answering(EMPTY_OK));
    auto const path = std::filesystem::temp_directory_path().string();
    std::vector<std::string> const refused = {"file://localhost" + path,
                                              "ftp://" + target.authority() + "/",
                                              "gopher://" + target.authority() + "/",
                                              "dict://" + target.authority() + "/",
                                              "telnet://" + target.authority() + "/",
                                              "ws://" + target.authority() + "/"};
    for (auto const& url : refused) {
        RawServer redirecting(
            answering("HTTP/1.1 302 Found\r\nLocation: " + url + "\r\nContent-Length: 0\r\n\r\n"));
        for (auto const& [response, statusCode] :
             {std::pair(get(url), 0), std::pair(get(redirecting.url()), 302)}) {
            EXPECT_EQ(response.error.code, ErrorCode::UnsupportedProtocol) << url;
            EXPECT_EQ(response.statusCode, statusCode);
            EXPECT_EQ(response.body, "");
        }
    }
    EXPECT_EQ(target.connections(), 0);
    EXPECT_EQ(get("HTTP://" + target.authority() + "/").statusCode, 200);
    EXPECT_EQ(get("hTtP://" + target.authority()).statusCode, 200);
}

TEST(RefusalTest, KeepsFromTheWireWhatItCannotCarry) {
    RawServer server(answering(EMPTY_OK));
    struct Row {
        std::string message;
        Request request;
        std::vector<MultiPart::Part> parts;
        std::string proxy;
    };
    auto const url = server.url();
    auto const header = [&url](std::string const& name, std::string const& value) {
        return Request{Url(url), {{name, value}}, {}};
    };
    auto const cookie = [&url](std::string const& value) {
        return Request{Url(url), {}, {{"c", value}}};
    };
    Request const plain{Url(url), {}, {}};
    auto options = patient();
    options.onData = [](std::string const&) { ADD_FAILURE(); };
    options.isCancelled = [] { return ADD_FAILURE(), true; };
    for (auto const& row : std::vector<Row>{
             {"", {Url("no URL"), {{"", ""}}, {}}, {}, ""},
             {"URL contains NUL", {Url(url + "a\0b"s), {}, {}}, {}, ""},
             {"URL contains NUL", {Url("http://u\0@"s + server.authority()), {}, {}}, {}, ""},
             {"header name is empty", header("", "v"), {}, ""},
             {"header name contains NUL", header("X\0Y"s, "v"), {}, ""},
             {"header name contains a line break", header("X\rY", "v"), {}, ""},
             {"header name contains a line break", header("X\nY: 1", "v"), {}, ""},
             {"header name contains a colon", header("X:", "v"), {}, ""},
             {"header name contains a space", header("X ", "v"), {}, ""},
             {"value of header X contains NUL", header("X", "v\0w"s), {}, ""},
             {"value of header X contains a line break", header("X", "v\r\nY: 1"), {}, ""},
             {"value of header X contains a line break", header("X", "v\n"), {}, ""},
             {"value of cookie c contains a line break", cookie("\"v\r\nY: 1\""), {}, ""},
             {"value of cookie c contains NUL", cookie("\"\0\""s), {}, ""},
             {"proxy contains NUL", plain, {}, url + "\0"s},
             {"part name contains a line break", plain, {{"ok", "", ""}, {"n\r\n", "", ""}}, ""},
             {"part name contains NUL", plain, {{"\0n"s, "", ""}}, ""},
             {"content type of part n contains a line break", plain, {{"n", "", "a/b\nX: 1"}}, ""},
             {"content type of part n contains NUL", plain, {{"n", "", "a\0b"s}}, ""},
             {"value of part n contains NUL", plain, {{"n", "v\0w"s, ""}}, ""},
         }) {
        SCOPED_TRACE(row.message);
        CprHttpClient client;
        options.proxy = row.proxy;
        std::vector<Response> responses = {client.post(row.request, MultiPart{row.parts}, options)};
        for (auto const& operation : operations()) {
            if (row.parts.empty()) {
                responses.push_back(operation.call(client, row.request, options));
            }
        }
        for (auto const& response : responses) {
            EXPECT_EQ(response.error.code, ErrorCode::NotPerformed);
            EXPECT_EQ(response.error.message, row.message);
            EXPECT_EQ(response.statusCode, 0);
        }
    }
    EXPECT_EQ(server.connections(), 0);
}

TEST(RefusalTest, LetsEverythingElsePassAsItIs) {
    std::vector<std::string> requests;
    RawServer server(answering(EMPTY_OK, &requests));
    Request request;
    request.url = server.url("/p");
    request.url.addParameter("n\0"s, "v\r\n\0"s);
    request.url.setAnchor("a\0"s);
    request.headers = {{"X-Empty", ""}, {"X-Odd", "a:b \"c\" \t\x01\xff"}};
    request.cookies = {{"a\r\n", "1\r\n\0"s}, {"b", "\"quo ted\""}, {"c", ""}};
    auto const head = " /p?n%00=v%0D%0A%00 HTTP/1.1\r\n"s;

    for (auto const& [name, method, call] : operations()) {
        SCOPED_TRACE(name);
        CprHttpClient client;
        EXPECT_EQ(call(client, request, patient()).statusCode, 200);
        auto const& sent = requests.back();
        EXPECT_EQ(sent.find(method + head), 0U) << sent;
        EXPECT_THAT(sent, HasSubstr("\r\nX-Empty:\r\n"));
        EXPECT_THAT(sent, HasSubstr("\r\nX-Odd: a:b \"c\" \t\x01\xff\r\n"));
        EXPECT_THAT(sent, HasSubstr("\r\nCookie: a%0D%0A=1%0D%0A%00; b=\"quo ted\"; c=; \r\n"));
    }
    auto const body = "\0\r\n\r\n\xff"s;
    EXPECT_EQ(CprHttpClient().post(request, body, patient()).statusCode, 200);
    EXPECT_EQ(requests.back().substr(requests.back().find("\r\n\r\n") + 4), body);
    MultiPart const form{{{"n\"\xc3\xa4", "v\r\n--\r\n", "a/b; c=d"}, {"first", "", ""}}};
    EXPECT_EQ(CprHttpClient().post(request, form, patient()).statusCode, 200);
    auto const part = "\r\nContent-Type: a/b; c=d\r\n\r\nv\r\n--\r\n\r\n--"s;
    EXPECT_LT(requests.back().find(part), requests.back().find("name=\"first\"\r\n\r\n\r\n--"));
}

struct HostileRow {
    std::string name;
    std::function<void(Connection&)> handler;
    std::vector<ErrorCode> outcomes;
    std::string scheme;
};

HostileRow answer(std::string const& name, std::string const& text,
                  std::vector<ErrorCode> const& outcomes) {
    return {name, answering(text), outcomes, "http"};
}

HostileRow flood(std::string const& name, std::string const& text, std::string const& piece,
                 std::vector<ErrorCode> const& outcomes) {
    return {name, endless(text, piece), outcomes, "http"};
}

HostileRow stall(std::string const& name, std::string const& text, std::string scheme = "http",
                 ErrorCode outcome = ErrorCode::OperationTimedOut) {
    return {name, stalling(text), {outcome}, std::move(scheme)};
}

HostileRow reset(std::string const& name, std::string const& text,
                 std::vector<ErrorCode> const& outcomes, std::string scheme = "http") {
    return {name, resetting(text), outcomes, std::move(scheme)};
}

std::vector<HostileRow> hostileAnswers() {
    constexpr auto OK = ErrorCode::Ok;
    constexpr auto EMPTY = ErrorCode::EmptyResponse;
    constexpr auto INTERNAL = ErrorCode::InternalError;
    constexpr auto RECEIVE = ErrorCode::NetworkReceiveError;
    constexpr auto SEND = ErrorCode::NetworkSendFailure;
    constexpr auto LATE = ErrorCode::OperationTimedOut;
    constexpr auto NOT_HTTP = ErrorCode::UnsupportedProtocol;
    constexpr auto NO_TLS = ErrorCode::SslConnectError;
    auto const ok = "HTTP/1.1 200 OK\r\n"s;
    auto const chunked = ok + "Transfer-Encoding: chunked\r\n\r\n";
    auto const moved = "HTTP/1.1 302 X\r\nContent-Length: 0\r\nLocation: "s;
    auto const full = [&ok](std::string const& headers) { return ok + headers + "\r\nbody"; };
    return {
        answer("nothing", "", {EMPTY}),
        answer("garbage", "\x00\xff\x13garbage\r\n\r\n"s, {NOT_HTTP}),
        flood("garbage without end", "", "\xfe", {NOT_HTTP}),
        answer("HTTP/0.9", "<html></html>", {NOT_HTTP}),
        answer("status line of nonsense", "HTTP/1.1 abc\r\n\r\n", {NOT_HTTP}),
        answer("status code too large", "HTTP/1.1 99999 X\r\n\r\n", {NOT_HTTP}),
        answer("status code negative", "HTTP/1.1 -20 X\r\n\r\n", {NOT_HTTP}),
        answer("unknown version", "HTTP/9.9 200 OK\r\n\r\n", {NOT_HTTP}),
        answer("cut in the status line", "HTTP/1.1 20", {OK, EMPTY}),
        answer("cut in the headers", ok + "X: 1\r\nY", {OK, EMPTY}),
        answer("header without a colon", full("colon\r\n"), {INTERNAL}),
        answer("header of NULs", full("X: \0\0\r\n"s), {INTERNAL}),
        answer("header line too long", full("X: " + std::string(200'000, 'x')), {INTERNAL}),
        flood("header line without end", ok + "X: ", "x", {INTERNAL}),
        flood("headers without end", ok, "X: 1\r\n", {RECEIVE, LATE}),
        flood("early answers without end", "", "HTTP/1.1 100 Continue\r\n\r\n", {RECEIVE, LATE}),
        answer("a thousand cookies", full(repeated("Set-Cookie: a=1\r\nSet-Cookie: b=2\r\n", 500)),
               {OK}),
        answer("odd cookies",
               full("Set-Cookie: \r\nSet-Cookie: =\r\nSet-Cookie: ;;\r\nSet-Cookie: a=\tb; "
                    "path=\t/\t1; domain=\t; expires=x; max-age=99999999999999999999\r\n"),
               {OK}),
        answer("body cut", full("Content-Length: 100\r\n"), {INTERNAL}),
        answer("length negative", full("Content-Length: -1\r\n"), {INTERNAL}),
        answer("length too large", full("Content-Length: 99999999999999999999999\r\n"), {OK}),
        answer("length of nonsense", full("Content-Length: x\r\n"), {INTERNAL}),
        answer("two lengths", full("Content-Length: 4\r\nContent-Length: 2\r\n"), {OK, INTERNAL}),
        answer("chunk size of nonsense", chunked + "xyz\r\nbody\r\n", {RECEIVE}),
        answer("chunk size negative", chunked + "-4\r\nbody\r\n0\r\n\r\n", {RECEIVE}),
        answer("chunk size too large", chunked + "ffffffffffffffffffff\r\nbody", {RECEIVE}),
        answer("chunk longer than it says", chunked + "2\r\nbody\r\n0\r\n\r\n", {RECEIVE}),
        answer("chunk shorter than it says", chunked + "400\r\nbody\r\n0\r\n\r\n", {INTERNAL}),
        flood("chunks without end", chunked, "1\r\nx\r\n", {LATE}),
        answer("compression of nonsense", full("Content-Encoding: gzip\r\n"), {INTERNAL}),
        answer("redirect to itself", moved + "/\r\n\r\n", {ErrorCode::TooManyRedirects}),
        answer("redirect to nonsense", moved + "http://:/\r\n\r\n", {ErrorCode::InvalidUrlFormat}),
        stall("stall before the head", ""),
        stall("stall in the head", ok + "X: 1\r\nY"),
        stall("stall in the body", full("Content-Length: 100\r\n")),
        stall("stall in a chunk", chunked + "4"),
        stall("stall in the handshake", "", "https"),
        stall("stall in a record", "\x16\x03\x03\x40", "https"),
        stall("garbage in the handshake", "HTTP/1.1 400 Bad Request\r\n\r\n", "https", NO_TLS),
        reset("reset before the head", "", {RECEIVE}),
        reset("reset in the head", ok + "X: 1\r\nY", {RECEIVE}),
        reset("reset in the body", full("Content-Length: 100\r\n"), {RECEIVE}),
        reset("reset in the handshake", "", {NO_TLS, RECEIVE, SEND}, "https"),
    };
}

TEST(HostileServerTest, EndsInAValueWithinTheTimeout) {
    for (auto const& [name, handler, outcomes, scheme] : hostileAnswers()) {
        SCOPED_TRACE(name);
        RawServer server(handler);
        auto options = patient();
        if (outcomes.back() == ErrorCode::OperationTimedOut) {
            options.timeout = 150'000;
        }

        auto const response = get(scheme + "://" + server.authority() + "/", options);

        EXPECT_THAT(outcomes, Contains(response.error.code))
            << static_cast<int>(response.error.code) << " " << response.error.message;
        EXPECT_LE(response.cookies.size(), 2U);
    }
}

TEST(HostileServerTest, MayLeaveAConnectionUnanswered) {
    // With a full queue of connections that nobody accepts, the kernel drops further ones.
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    auto const listener = socket(AF_INET, SOCK_STREAM, 0);
    ASSERT_EQ(bind(listener, generic, length), 0);
    ASSERT_EQ(listen(listener, 0), 0);
    ASSERT_EQ(getsockname(listener, generic, &length), 0);
    std::vector<int> waiting;
    for (int i = 0; i < 4; ++i) {
        waiting.push_back(socket(AF_INET, SOCK_STREAM, 0));
        fcntl(waiting.back(), F_SETFL, O_NONBLOCK);
        (void)connect(waiting.back(), generic, length);
    }
    auto options = patient();
    options.timeout = 150'000;

    auto const url = "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/";
    EXPECT_EQ(get(url, options).error.code, ErrorCode::OperationTimedOut);

    for (auto const socket : waiting) {
        close(socket);
    }
    close(listener);
}

TEST(HostileServerTest, MayGoAwayDuringALargeUpload) {
    std::string const body(16 << 20, 'x');
    for (auto const isReset : {false, true}) {
        RawServer server([isReset](Connection& connection) {
            (void)connection.readSome();
            if (isReset) {
                connection.reset();
            }
        });
        Request request;
        request.url = server.url();
        for (auto const& response :
             {CprHttpClient().post(request, body, patient()),
              CprHttpClient().post(request, MultiPart{{{"n", body, ""}}}, patient())}) {
            EXPECT_THAT(response.error.code,
                        AnyOf(ErrorCode::NetworkSendFailure, ErrorCode::NetworkReceiveError,
                              ErrorCode::EmptyResponse));
        }
    }
}

long openDescriptors() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

long residentKilobytes() {
    std::ifstream status("/proc/self/statm");
    long total = 0;
    long resident = 0;
    status >> total >> resident;
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

TEST(HostileServerTest, LeavesNeitherDescriptorsNorMemoryBehind) {
    if (!std::filesystem::exists("/proc/self/statm")) {
        GTEST_SKIP() << "this system does not tell a process what it holds";
    }
    auto const body = "HTTP/1.1 200 OK\r\nSet-Cookie: a=1\r\nContent-Length: 4\r\n\r\nbody"s;
    std::vector<std::unique_ptr<RawServer>> servers;
    for (auto const& handler :
         {answering(body), answering(""), answering("garbage"), answering(body.substr(0, 60)),
          resetting(""), answering("HTTP/1.1 302 X\r\nLocation: /\r\n\r\n")}) {
        servers.push_back(std::make_unique<RawServer>(handler));
    }
    constexpr int ROUNDS = 600;
    long descriptors = 0;
    long kilobytes = 0;
    for (int round = 0; round < ROUNDS; ++round) {
        if (round == ROUNDS / 3) {  // By now every cache is warm.
            descriptors = openDescriptors();
            kilobytes = residentKilobytes();
        }
        for (auto const& server : servers) {
            (void)get(server->url());
        }
        (void)get("http://127.0.0.1:1/");
        (void)get("ftp://127.0.0.1/");
    }
    std::cout << ROUNDS * (servers.size() + 2) << " calls, descriptors " << descriptors << " to "
              << openDescriptors() << ", resident " << kilobytes << " to " << residentKilobytes()
              << " KiB\n";
    // A connection that a server is still closing may be open for a moment, one for each of them.
    EXPECT_LE(openDescriptors(), descriptors + static_cast<long>(servers.size()));
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    EXPECT_LE(residentKilobytes(), kilobytes + 4096);
#endif
}

}  // namespace
}  // namespace Ostrel::Networking
