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

std::string environment(char const* name) {
    auto const value = std::getenv(name);
    return value ? value : throw std::logic_error(std::string(name) + " is not set");
}

Response perform(Testing::Operation const& operation, std::string const& host, int port) {
    CprHttpClient client;
    auto options = Testing::patient();
    options.proxy = "http://127.0.0.1:" + environment("PROXY_PORT");
    auto const url = "https://" + host + ":" + std::to_string(port) + "/path?a=1";
    return operation.call(client, Testing::requestFor(url), options);
}

/// Echoes what it gets, over TLS.
LocalServer tlsServer() {
    return LocalServer(
        [](auto const& request, auto& response) {
            response.set_content(request.method + " " + request.target, "text/plain");
        },
        std::make_unique<httplib::SSLServer>(environment("CERTIFICATE").c_str(),
                                             environment("KEY").c_str()));
}

void expectNoTrust(std::string const& host) {
    auto const server = tlsServer();
    auto const response = perform(Testing::operations()[0], host, server.port());
    EXPECT_EQ(response.error.code, ErrorCode::SslRemoteCertificateError);
    EXPECT_TRUE(server.requests().empty());
}

// tests/CMakeLists.txt runs the suites whose names begin with "Trusted" with the certificate in
// place of libcurl's authorities, and the others without.
TEST(RealProxyTest, RefusesAServerThatIsNotTrusted) { expectNoTrust("127.0.0.1"); }

TEST(TrustedRealProxyTest, FetchesOverHttps) {
    expectNoTrust("localhost");  // Not the name in the certificate.
    auto const server = tlsServer();
    for (auto const& operation : Testing::operations()) {
        auto const response = perform(operation, "127.0.0.1", server.port());
        EXPECT_EQ(response.statusCode, 200) << response.error.message;
        EXPECT_EQ(response.body, operation.method == "HEAD" ? "" : operation.method + " /path?a=1");
    }
    std::ifstream log(environment("PROXY_LOG"));
    EXPECT_THAT(std::string(std::istreambuf_iterator<char>(log), {}),
                ::testing::HasSubstr("CONNECT 127.0.0.1:" + std::to_string(server.port())));
}

}  // namespace
}  // namespace Ostrel::Networking
