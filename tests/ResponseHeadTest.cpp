#include "Networking/Cpr/ResponseHead.h"

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "tests/Support/Operations.h"
#include "tests/Support/RawServer.h"

namespace Ostrel::Networking {
namespace {

using Testing::Connection;
using ::testing::Each;
using ::testing::HasSubstr;
using ::testing::Not;
using Testing::RawServer;

std::string const MOVED = "HTTP/1.1 302 Found\r\nLocation: /\r\nX: hop\r\n";
std::string const OK = "HTTP/1.1 200 OK\r\n";
std::string const CHUNKED = "Transfer-Encoding: chunked\r\n";

template <typename Head>
std::string textOf(Head const& head) {
    auto text = head.statusLine + "|" + head.reason + "|";
    for (auto const& [name, value] : head.headers) {
        text.append(name).append("=").append(value).append(";");
    }
    return text;
}

TEST(ResponseHeadTest, IsThatOfTheLastResponseAsItCameOverTheWire) {
    using Row = std::tuple<std::string, std::vector<std::string>, std::string>;
    for (auto const& [name, replies, head] : std::vector<Row>{
             {"no reason after a redirect",
              {MOVED + "\r\n", "HTTP/1.1 200\r\n\r\n"},
              "HTTP/1.1 200||"},
             {"no reason after interim responses",
              {"HTTP/1.1 100 Continue\r\nA: 1\r\n\r\nHTTP/1.1 103 Early\r\nB: 2\r\n\r\n"
               "HTTP/1.1 204 \r\n\r\n"},
              "HTTP/1.1 204||"},
             {"lower case after a redirect",
              {MOVED + "\r\n", "http/1.1 404 Gone\r\n\r\n"},
              "http/1.1 404 Gone|Gone|"},
             {"two spellings",
              {OK + "X-A: 1\r\nx-a: 2\r\nX-A: 3\r\n\r\n"},
              "HTTP/1.1 200 OK|OK|X-A=1;"},
             {"equal names",
              {OK + "Cache-Control: a\r\nCache-Control: b\r\n\r\n"},
              "HTTP/1.1 200 OK|OK|Cache-Control=a;"},
             {"folds",
              {OK + "X: one\r\n two: 2\r\n\tHTTP/1.1 200 3\r\nx: no\r\n no\r\nY:\r\n y \r\n\r\n"},
              "HTTP/1.1 200 OK|OK|X=one two: 2 HTTP/1.1 200 3;Y=y;"},
             {"a colon in the reason",
              {"HTTP/1.1 500 Backend error: refused\r\n\r\n"},
              "HTTP/1.1 500 Backend error: refused|Backend error: refused|"},
             {"a header in the reason",
              {"HTTP/1.1 302 Location: /evil\r\n\r\n"},
              "HTTP/1.1 302 Location: /evil|Location: /evil|"},
             {"headers like status lines",
              {OK + "A: 1\r\nHTTP/2-Settings: x\r\nHTTP/1.1 404 No: y\r\n\r\n"},
              "HTTP/1.1 200 OK|OK|A=1;HTTP/1.1 404 No=y;HTTP/2-Settings=x;"},
             {"trailers",
              {OK + "A: 1\r\n" + CHUNKED + "\r\n0\r\na: 2\r\nB: 3\r\nHTTP/1.1 404 No: y\r\n\r\n"},
              "HTTP/1.1 200 OK|OK|A=1;Transfer-Encoding=chunked;"},
         }) {
        SCOPED_TRACE(name);
        std::vector<std::string> requests;
        RawServer server([&, next = replies.begin()](Connection& connection) mutable {
            requests.push_back(connection.readRequest());
            connection.send(*next++);
        });
        auto options = Testing::patient();
        options.followRedirects = replies.size() > 1;
        options.maxRedirects = 1;

        auto const response = Testing::get(server.url(), options);

        EXPECT_EQ(response.error.code, ErrorCode::Ok) << response.error.message;
        EXPECT_EQ(textOf(response), head);
        EXPECT_THAT(requests, Each(Not(HasSubstr("Cookie"))));
    }
}

TEST(ResponseHeadTest, IsNotWhatAProxyAnswersToConnect) {
    for (std::string const reply :
         {"403 Forbidden", "407 Auth", "502 Bad Gateway", "200 Established"}) {
        SCOPED_TRACE(reply);
        RawServer const proxy(Testing::answering("HTTP/1.1 " + reply + "\r\nX: 1\r\n\r\n"));

        auto options = Testing::patient();
        options.proxy = proxy.url();

        auto const response = Testing::get("https://host.test/", options);

        EXPECT_NE(response.error.code, ErrorCode::Ok);
        EXPECT_EQ(response.statusCode, 0);
        EXPECT_EQ(textOf(response), "||");
    }
}

TEST(ResponseHeadTest, IsReadFromAnyText) {
    auto const final = OK + CHUNKED + "\r\n";
    for (auto const& [rawHeads, head] : std::vector<std::pair<std::string, std::string>>{
             {"", "||"},
             {"X: 1\r\n\r\n", "||"},
             {"HTTP/1.1  200  Very OK \r\nLocation: /a\r\nLocation: /b\r\n\r\n",
              "HTTP/1.1  200  Very OK|Very OK|Location=/a;"},
             {"HTTP/1.1 200 Established\r\nVia: p\r\n\r\nHTTP/2 200 \r\na: 1\r\n\r\n",
              "HTTP/2 200||a=1;"},
             {"HTTP/1.1 200 OK\nA:1\n\n", "HTTP/1.1 200 OK|OK|A=1;"},
             {"HTTP/1.1 200 OK\r\n fold\r\n: 1\r\nA\r\n : 2\r\n\r\n", "HTTP/1.1 200 OK|OK|=1;"},
             {"HTTP\r\n\r\nHTTP/\r\n\r\nHTTP/1.1\r\n\r\nHTTP/1.1 x\r\n\r\nHTTP/ 200\r\n\r\n", "||"},
             // Cut short.
             {OK + "A: 1\r\nB", "HTTP/1.1 200 OK|OK|A=1;"},
             {MOVED + "\r\n" + OK + "A: 1\r\n", "HTTP/1.1 200 OK|OK|A=1;"},
             // Trailers that look like a head, before a redirect and at the end.
             {final + "HTTP/1.1 404 No\r\nA: 1\r\n",
              "HTTP/1.1 200 OK|OK|Transfer-Encoding=chunked;"},
             {MOVED + CHUNKED + "\r\nHTTP/1.1 404 No\r\nA: 1\r\n" + OK + "B: 2\r\n\r\n",
              "HTTP/1.1 200 OK|OK|B=2;"},
         }) {
        EXPECT_EQ(textOf(readResponseHead(rawHeads)), head) << rawHeads;
    }
}

}  // namespace
}  // namespace Ostrel::Networking
