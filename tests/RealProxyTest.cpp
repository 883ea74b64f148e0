// Run by WithTinyproxy.sh, which tells through the environment where the proxy is.

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>

#include "Networking/Adapters/SystemProxyAdapter.h"
#include "Networking/Cpr/CprHttpClient.h"
#include "examples/LocalServer.h"
#include "tests/Support/Operations.h"

namespace Ostrel::Networking {
namespace {

using ::testing::HasSubstr;

std::string environment(char const* name) {
    auto const value = std::getenv(name);
    return value ? value : throw std::logic_error(std::string(name) + " is not set");
}

struct Tinyproxy : IProxyProvider {
    [[nodiscard]] ProxyInfo getProxy(std::string const&) const override {
        return {ProxyType::Http, "127.0.0.1", std::stoi(environment("PROXY_PORT"))};
    }

    static std::string log() {
        std::ifstream file(environment("PROXY_LOG"));
        return {std::istreambuf_iterator<char>(file), {}};
    }
};

void echo(httplib::Request const& request, httplib::Response& response) {
    response.set_content(request.method + " " + request.target + " " + request.body, "text/plain");
}

std::unique_ptr<httplib::Server> tls() {
    return std::make_unique<httplib::SSLServer>(environment("CERTIFICATE").c_str(),
                                                environment("KEY").c_str());
}

Request requestFor(std::string const& scheme, LocalServer const& server) {
    Request request;
    request.url = scheme + "://127.0.0.1:" + std::to_string(server.port()) + "/path?a=1";
    return request;
}

Options patient() {
    Options options;
    options.timeout = 20'000'000;
    return options;
}

SystemProxyAdapter client() {
    return {std::make_shared<CprHttpClient>(), std::make_unique<Tinyproxy>()};
}

void expectAnswer(Testing::Operation const& operation, Response const& response) {
    EXPECT_EQ(response.error.code, ErrorCode::Ok) << response.error.message;
    EXPECT_EQ(response.statusCode, 200);
    if (operation.method != "HEAD") {
        EXPECT_THAT(response.body, HasSubstr(operation.method + " /path?a=1 "));
    }
}

TEST(RealProxyTest, FetchesOverHttp) {
    LocalServer server(echo);
    for (auto const& operation : Testing::operations()) {
        SCOPED_TRACE(operation.name);
        auto chain = client();
        expectAnswer(operation, operation.call(chain, requestFor("http", server), patient()));
        EXPECT_THAT(server.requests().back().get_header_value("Via"), HasSubstr("test-proxy"));
    }
}

TEST(RealProxyTest, RefusesAServerThatIsNotTrusted) {
    LocalServer server(echo, tls());
    for (auto const& operation : Testing::operations()) {
        SCOPED_TRACE(operation.name);
        auto chain = client();
        auto const response = operation.call(chain, requestFor("https", server), patient());
        EXPECT_EQ(response.error.code, ErrorCode::SslRemoteCertificateError);
        EXPECT_EQ(response.body, "");
    }
    EXPECT_TRUE(server.requests().empty());
}

TEST(RealProxyTest, TrustedFetchesOverHttps) {
    LocalServer server(echo, tls());
    for (auto const& operation : Testing::operations()) {
        SCOPED_TRACE(operation.name);
        auto chain = client();
        expectAnswer(operation, operation.call(chain, requestFor("https", server), patient()));
        EXPECT_EQ(server.requests().back().get_header_value("Via"), "") << "a tunnel";
    }
    EXPECT_THAT(Tinyproxy::log(), HasSubstr("CONNECT 127.0.0.1:" + std::to_string(server.port())));
}

}  // namespace
}  // namespace Ostrel::Networking
