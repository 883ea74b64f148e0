// Run by WithTinyproxy.sh, which tells through the environment where the proxy is.

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>

#include "examples/LocalServer.h"
#include "tests/Support/Operations.h"

namespace Ostrel::Networking {
namespace {

using ::testing::HasSubstr;

std::string environment(char const* name) {
    auto const value = std::getenv(name);
    return value ? value : throw std::logic_error(std::string(name) + " is not set");
}

Response perform(Testing::Operation const& operation, std::string const& origin, int port) {
    CprHttpClient client;
    auto options = Testing::patient();
    options.proxy = "http://127.0.0.1:" + environment("PROXY_PORT");
    auto const url = origin + ":" + std::to_string(port) + "/path?a=1";
    return operation.call(client, Testing::requestFor(url), options);
}

/// Expects that `server`, which is to echo, answers every operation; returns the last request.
httplib::Request expectAnswers(std::string const& origin, LocalServer const& server) {
    for (auto const& operation : Testing::operations()) {
        auto const response = perform(operation, origin, server.port());
        EXPECT_EQ(response.error.code, ErrorCode::Ok) << response.error.message;
        EXPECT_EQ(response.statusCode, 200);
        EXPECT_EQ(response.body, operation.method == "HEAD" ? "" : operation.method + " /path?a=1");
    }
    return server.requests().back();
}

void expectNoTrust(std::string const& origin, LocalServer const& server) {
    auto const response = perform(Testing::operations()[0], origin, server.port());
    EXPECT_EQ(response.error.code, ErrorCode::SslRemoteCertificateError);
    EXPECT_EQ(response.body, "");
    EXPECT_TRUE(server.requests().empty());
}

void echo(httplib::Request const& request, httplib::Response& response) {
    response.set_content(request.method + " " + request.target, "text/plain");
}

std::unique_ptr<httplib::Server> tls() {
    return std::make_unique<httplib::SSLServer>(environment("CERTIFICATE").c_str(),
                                                environment("KEY").c_str());
}

TEST(RealProxyTest, FetchesOverHttp) {
    LocalServer server(echo);
    EXPECT_THAT(expectAnswers("http://127.0.0.1", server).get_header_value("Via"),
                HasSubstr("test-proxy"));
}

TEST(RealProxyTest, RefusesAServerThatIsNotTrusted) {
    expectNoTrust("https://127.0.0.1", LocalServer(echo, tls()));
}

TEST(RealProxyTest, TrustedFetchesOverHttps) {
    expectNoTrust("https://localhost", LocalServer(echo, tls()));  // Not in the certificate.
    LocalServer server(echo, tls());
    EXPECT_EQ(expectAnswers("https://127.0.0.1", server).get_header_value("Via"), "") << "a tunnel";
    std::ifstream log(environment("PROXY_LOG"));
    EXPECT_THAT(std::string(std::istreambuf_iterator<char>(log), {}),
                HasSubstr("CONNECT 127.0.0.1:" + std::to_string(server.port())));
}

}  // namespace
}  // namespace Ostrel::Networking
