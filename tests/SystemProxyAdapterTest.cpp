#include "Networking/Adapters/SystemProxyAdapter.h"

#include <functional>
#include <stdexcept>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/Support/Operations.h"

namespace Ostrel::Networking {
namespace {

using Ask = std::function<ProxyInfo(std::string const&)>;

struct Provider : IProxyProvider {
    explicit Provider(Ask answer) : ask(std::move(answer)) {}
    [[nodiscard]] ProxyInfo getProxy(std::string const& url) const override { return ask(url); }

    Ask ask;
};

/// Answers with the proxy of the options that reach it.
struct ProxyClient : ClientAdapter {
    ProxyClient() : ClientAdapter(nullptr) {}

    Response perform(Request const&, Options const& options, Operation const&) override {
        Response response;
        response.body = options.proxy;
        return response;
    }
};

SystemProxyAdapter adapterOver(Ask ask) {
    return {std::make_shared<ProxyClient>(), std::make_unique<Provider>(std::move(ask))};
}

TEST(SystemProxyAdapterTest, PutsTheProxyOfTheSystemInPlaceOfTheCallers) {
    struct Row {
        char const* url;
        ProxyInfo answer;
        char const* fromEmpty;
        char const* fromOwn = nullptr;
    };
    Row const rows[] = {
        {"http://a.test/", {ProxyType::Http, "proxy.test", 3128}, "http://proxy.test:3128"},
        {"https://a.test/", {ProxyType::Https, "10.0.0.1", 65536}, "https://10.0.0.1:65536"},
        // The protocol is that of the URL, whatever the kind of the proxy.
        {"https://a.test/", {ProxyType::Socks, "proxy.test", 1080}, "https://proxy.test:1080"},
        {"a_b://a.test/", {ProxyType::Http, "h", 1}, "a_b://h:1"},
        // Nothing is checked.
        {"http://a.test/", {ProxyType::Http, "", 0}, "http://:0"},
        {"http://a.test/", {ProxyType::Http, " H/@?", -1}, "http:// H/@?:-1"},
        {"no URL", {ProxyType::Http, "h", 1}, "://h:1"},
        // No proxy: host and port mean nothing.
        {"http://a.test/", {ProxyType::None, "proxy.test", 3128}, "", "own://proxy:1"},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.fromEmpty);
        std::vector<std::string> asked;
        auto adapter =
            adapterOver([&](auto const& url) { return asked.push_back(url), row.answer; });
        Request request;
        request.url = std::string(row.url);
        for (auto const& own : {"", "own://proxy:1"}) {
            Options options;
            options.proxy = own;
            auto const expected = *own && row.fromOwn ? row.fromOwn : row.fromEmpty;

            for (auto const& operation : Testing::operations()) {
                EXPECT_EQ(operation.call(adapter, request, options).body, expected);
            }
            EXPECT_EQ(adapter.addProxyUrlOption(options, request).proxy, expected);
            EXPECT_EQ(options.proxy, own);
        }
        EXPECT_EQ(asked, std::vector<std::string>(10, request.url.toString()));
    }
}

TEST(SystemProxyAdapterTest, PassesExceptionsOfTheProviderOn) {
    auto adapter = adapterOver([](auto const&) -> ProxyInfo { throw std::out_of_range("x"); });
    EXPECT_THROW((void)adapter.get(Request(), Options()), std::out_of_range);
}

}  // namespace
}  // namespace Ostrel::Networking
