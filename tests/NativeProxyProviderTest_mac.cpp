#include <cstdio>
#include <future>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Networking/NativeProxyProvider/NativeProxyProvider.h"

namespace Ostrel::Networking {
namespace {

/// The settings as `scutil --proxy` prints them, a line "key : value" for each.
std::map<std::string, std::string> printedSettings() {
    auto* const output = popen("scutil --proxy", "r");
    std::string text;
    for (auto next = fgetc(output); next != EOF; next = fgetc(output)) {
        text += static_cast<char>(next);
    }
    EXPECT_EQ(pclose(output), 0);

    std::map<std::string, std::string> settings;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string key, colon, value;
        words >> key >> colon >> value;
        settings[key] = value;
    }
    return settings;
}

/// "HOST:PORT", or a text without a host if there is no proxy for URLs with the protocol.
std::string proxyFor(std::string const& protocol) {
    auto const proxy = NativeProxyProvider().getProxy(protocol + "://host.test");
    return proxy.host + ":" + (proxy.port != 0 ? std::to_string(proxy.port) : "");
}

TEST(NativeProxyProviderMacTest, FindsInEachThreadWhatTheSystemPrints) {
    struct Row {
        std::string protocol;
        std::string key;
    };
    auto settings = printedSettings();
    for (auto const& [protocol, key] :
         std::vector<Row>{{"http", "HTTP"}, {"https", "HTTPS"}, {"socks", "SOCKS"}}) {
        SCOPED_TRACE(protocol);
        auto const printed = settings[key + "Proxy"] + ":" + settings[key + "Port"];
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
