#include <array>
#include <cstdio>
#include <future>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Networking/NativeProxyProvider/NativeProxyProvider.h"

namespace Ostrel::Networking {
namespace {

/// The value of `key` in the settings as `scutil --proxy` prints them, "key : value" on each line.
std::string printedSetting(std::string const& key) {
    auto const find = "awk '$1 == \"" + key + "\" { value = $3 } END { printf \"%s\", value }'";
    auto const command = "settings=$(scutil --proxy) && echo \"$settings\" | " + find;
    auto* const output = popen(command.c_str(), "r");
    std::array<char, 256> value{};
    (void)std::fgets(value.data(), value.size(), output);
    EXPECT_EQ(pclose(output), 0);
    return value.data();
}

/// "HOST:PORT", or a text without a host if there is no proxy for URLs with the protocol.
std::string proxyFor(std::string const& protocol) {
    auto const proxy = NativeProxyProvider().getProxy(protocol + "://host.test");
    return proxy.host + ":" + (proxy.port != 0 ? std::to_string(proxy.port) : "");
}

TEST(NativeProxyProviderMacTest, FindsInEachThreadWhatTheSystemPrints) {
    std::map<std::string, std::string> const prefixes = {
        {"http", "HTTP"}, {"https", "HTTPS"}, {"socks", "SOCKS"}};
    for (auto const& [protocol, prefix] : prefixes) {
        SCOPED_TRACE(protocol);
        auto const printed =
            printedSetting(prefix + "Proxy") + ":" + printedSetting(prefix + "Port");
        std::vector<std::future<std::string>> found;
        for (int thread = 0; thread < 4; ++thread) {
            found.push_back(std::async(std::launch::async, proxyFor, protocol));
        }
        for (auto& proxy : found) {
            EXPECT_EQ(proxy.get(), printed);
        }
    }
}

}  // namespace
}  // namespace Ostrel::Networking
