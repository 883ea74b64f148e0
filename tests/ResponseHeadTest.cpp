#include "Networking/Cpr/ResponseHead.h"

#include <regex>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "tests/Support/Operations.h"
#include "tests/Support/RawServer.h"

namespace Ostrel::Networking {
namespace {

using ::testing::AnyOf;
using Testing::Connection;
using Testing::RawServer;

/// `text` with the line ends of HTTP.
std::string wire(std::string const& text) {
    return std::regex_replace(text, std::regex("\n"), "\r\n");
}

template <typename Head>
std::string textOf(Head const& head) {
    auto text = head.statusLine + "|" + head.reason + "|";
    for (auto const& [name, value] : head.headers) {
        text.append(name).append("=").append(value).append(";");
    }
    return text;
}

TEST(ResponseHeadTest, IsThatOfTheLastResponseAsItCameOverTheWire) {
    std::string const moved = "HTTP/1.1 302 Found\nLocation: /\nX: hop\n";
    std::string const chunked = "Transfer-Encoding: chunked\n\n0\n";
    std::string const trailers = "a: 2\nB: 3\nHTTP/1.1 404 No: y\n\n";
    for (auto const& [replies, head] :
         std::vector<std::pair<std::vector<std::string>, std::string>>{
             {{moved + "\n", "HTTP/1.1 404 Gone\n\n"}, "HTTP/1.1 404 Gone|Gone|"},
             {{"HTTP/1.1 100 Go\nA: 1\n\nHTTP/1.1 103 X\nB: 2\n\nHTTP/1.1 204 \n\n"},
              "HTTP/1.1 204||"},
             {{"HTTP/1.1 200 OK\nA: 1\n" + chunked + trailers},
              "HTTP/1.1 200 OK|OK|A=1;Transfer-Encoding=chunked;"},
             {{moved + chunked + trailers, "HTTP/1.1 500 B: x\nC: 2\n\n"},
              "HTTP/1.1 500 B: x|B: x|C=2;"},
         }) {
        RawServer server([next = replies.begin()](Connection& connection) mutable {
            (void)connection.readRequest();
            connection.send(wire(*next++));
        });
        auto const response = Testing::get(server.url(), Testing::following());
        EXPECT_EQ(response.error.code, ErrorCode::Ok) << response.error.message;
        EXPECT_EQ(textOf(response), head);
    }
}

TEST(ResponseHeadTest, IsNotWhatAProxyAnswersToConnect) {
    for (std::string const reply : {"403 Forbidden", "407 X", "502 X", "200 Established"}) {
        SCOPED_TRACE(reply);
        RawServer const proxy([&reply](Connection& connection) {
            auto const isTunnel = connection.readRequest().find("CONNECT") == 0;
            connection.send(wire("HTTP/1.1 " + (isTunnel ? reply : "302 X") +
                                 "\nLocation: https://other.test/\n\n"));
        });
        auto options = Testing::following();
        options.proxy = proxy.url();
        for (auto const* url : {"https://host.test/", "http://redirected.test/"}) {
            auto const response = Testing::get(url, options);
            EXPECT_NE(response.error.code, ErrorCode::Ok);
            // libcurl 7.79 leaves the status of the redirect, and so its head.
            EXPECT_THAT(response.statusCode, AnyOf(0, 302));
            EXPECT_EQ(textOf(response), response.statusCode == 0
                                            ? "||"
                                            : "HTTP/1.1 302 X|X|Location=https://other.test/;");
        }
    }
}

TEST(ResponseHeadTest, IsReadFromAnyText) {
    std::string const moved = "HTTP/1.1 302 Found\nX: hop\n";
    std::string const chunked = "Transfer-Encoding: chunked\n\n";
    for (auto const& [rawHeads, head] : std::vector<std::pair<std::string, std::string>>{
             {"X: 1\n\n", "||"},
             {"HTTP\n\nHTTP/\n\nHTTP/1.1\n\nHTTP/1.1 x\n\nHTTP/ 200\n\n", "||"},
             {"HTTP/1.1  200  Very OK \nX: 1\n\n", "HTTP/1.1  200  Very OK|Very OK|X=1;"},
             {"http/1.1 404 Gone\n\n", "http/1.1 404 Gone|Gone|"},
             // If a name repeats, the first value is kept.
             {"HTTP/1.1 200 A\nX-A: 1\nx-a: 2\n\n", "HTTP/1.1 200 A|A|X-A=1;"},
             // Folded values, also of a header that is dropped.
             {"HTTP/1.1 200 A\nX: 1\n 2: 3\n\tHTTP/1.1 200 4\nx: no\n no\nY:\n y \n \n\n",
              "HTTP/1.1 200 A|A|X=1 2: 3 HTTP/1.1 200 4;Y=y;"},
             // A colon in the reason, and headers that look like a status line.
             {"HTTP/1.1 302 Location: /x\n\n", "HTTP/1.1 302 Location: /x|Location: /x|"},
             {"HTTP/1.1 200 A\nA: 1\nHTTP/2-Settings: x\nHTTP/1.1 404 No: y\n\n",
              "HTTP/1.1 200 A|A|A=1;HTTP/1.1 404 No=y;HTTP/2-Settings=x;"},
             // libcurl passes a line without a colon on before 7.84.
             {"HTTP/1.1 200 A\nA: 1\nHTTP/1.1 500 Evil\nB: 2\n\n", "HTTP/1.1 200 A|A|A=1;B=2;"},
             {"HTTP/1.1 200 Open\nVia: p\n\nHTTP/2 200 \na:1\n\nb: 2\n", "HTTP/2 200||a=1;"},
             {"HTTP/1.1 200 A\n fold\n: 1\nA\n : 2\n\n", "HTTP/1.1 200 A|A|=1;"},
             // Cut short.
             {"HTTP/1.1 200 A: b\nA: 1\nB", "HTTP/1.1 200 A: b|A: b|A=1;"},
             {moved + chunked + "HTTP/1.1 200 A\nA: 1\n", "HTTP/1.1 200 A|A|A=1;"},
             {moved + chunked + "HTTP/1.1 404 No: 1\nHTTP/1.1 200 A\nB: 2\n\n",
              "HTTP/1.1 200 A|A|B=2;"},
         }) {
        EXPECT_EQ(textOf(readResponseHead(rawHeads, false)), head) << rawHeads;
        EXPECT_EQ(textOf(readResponseHead(wire(rawHeads), false)), head) << rawHeads;
    }
    // After a success, no head is cut short. libcurl passes such trailers on before 7.84.
    auto const trailers = moved + chunked + "HTTP/1.1 500 Evil\nE: 1\n";
    EXPECT_EQ(textOf(readResponseHead(trailers, true)),
              "HTTP/1.1 302 Found|Found|Transfer-Encoding=chunked;X=hop;");
}

}  // namespace
}  // namespace Ostrel::Networking
