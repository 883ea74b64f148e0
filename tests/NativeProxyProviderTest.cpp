#include "Networking/NativeProxyProvider/NativeProxyProvider.h"

#include <algorithm>
#include <memory>
#include <new>
#include <stdexcept>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "Networking/AddAdapter.h"
#include "platform/SystemSettings.h"
#include "tests/Support/ScriptedClient.h"

namespace Ostrel::Networking {
namespace {

using ::testing::ContainsRegex;
using Values = decltype(SystemSettings::values);

std::string const NONE = "0 :0";
std::string const HTTP = "http://a.test";
std::string const HTTPS = "https://u:p@a.test:8/b?c=d#e";
std::string const SOCKS = "socks://a.test";

Values allEntries() {
    return {{kSCPropNetProxiesHTTPEnable, 1},  {kSCPropNetProxiesHTTPProxy, u"plain.test"},
            {kSCPropNetProxiesHTTPPort, 80},   {kSCPropNetProxiesHTTPSEnable, 1},
            {kSCPropNetProxiesHTTPSPort, 443}, {kSCPropNetProxiesHTTPSProxy, u"secure.test"},
            {kSCPropNetProxiesSOCKSEnable, 1}, {kSCPropNetProxiesSOCKSProxy, u"socks.test"},
            {kSCPropNetProxiesSOCKSPort, 1080}};
}

class NativeProxyProviderTest : public ::testing::Test {
protected:
    ~NativeProxyProviderTest() override { SystemSettings::set({}); }

    /// Also expects that so many snapshots are taken and released.
    static std::string proxyFor(std::string const& url, SystemSettings settings,
                                int snapshots = 1) {
        SystemSettings::set(std::move(settings));
        auto const before = SnapshotCount::current();
        auto const proxy = NativeProxyProvider().getProxy(url);
        EXPECT_EQ(SnapshotCount::current().taken - before.taken, snapshots);
        EXPECT_EQ(SnapshotCount::current().released - before.released, snapshots);
        return std::to_string(static_cast<int>(proxy.type)) + " " + proxy.host + ":" +
               std::to_string(proxy.port);
    }
};

TEST_F(NativeProxyProviderTest, TakesTheEntryOfTheProtocol) {
    struct Row {
        std::string url;
        std::string proxy;
        CFStringRef changed = nullptr;
        SystemSettings::Value value = {};
    };
    auto const host = kSCPropNetProxiesHTTPSProxy;
    auto const port = kSCPropNetProxiesHTTPSPort;
    for (auto const& [url, proxy, changed, value] : std::vector<Row>{
             {HTTPS, "2 secure.test:443"},
             {SOCKS, "4 socks.test:1080"},
             // The flag counts by its presence.
             {HTTP, "1 plain.test:80", kSCPropNetProxiesHTTPEnable, 0},
             // The host is taken as it is.
             {HTTPS, "2  Proxy.Test :443", host, u" Proxy.Test "},
             {HTTPS, "2 :443", host, std::u16string(u"\0b", 2)},
             // Longer in UTF-8 than in UTF-16, not to be converted, no text.
             {HTTPS, NONE, host, u"pr\u00f6xy.test"},
             {HTTPS, NONE, host, u"proxy\xd800.test"},
             // A port is not checked against the range of ports.
             {HTTPS, "2 secure.test:-1", port, -1},
             // Only the part before query and fragment must be of the grammar.
             {HTTP + "/?q=1/2", "1 plain.test:80"},
             {HTTP + "/#/route", "1 plain.test:80"},
         }) {
        auto values = allEntries();
        values[changed] = value;
        EXPECT_EQ(proxyFor(url, {values}), proxy);
    }
    for (auto const* url :
         {"HTTP://a.test", "socks5://a.test", "ftp://a.test", "http:/a.test", "http://[::1]/"}) {
        EXPECT_EQ(proxyFor(url, {allEntries()}, 0), NONE) << url;
    }
    EXPECT_EQ(proxyFor(HTTP, {}), NONE);
    EXPECT_EQ(proxyFor(HTTP, {allEntries(), false}, 0), NONE) << "settings that cannot be read";
}

TEST_F(NativeProxyProviderTest, NeedsTheWholeEntry) {
    for (auto const& [key, value] : allEntries()) {
        auto values = allEntries();
        values.erase(key);
        auto const found = {proxyFor(HTTP, {values}), proxyFor(HTTPS, {values}),
                            proxyFor(SOCKS, {values})};
        EXPECT_EQ(std::count(found.begin(), found.end(), NONE), 1);
    }
}

TEST_F(NativeProxyProviderTest, ServesTheSystemProxyAdapter) {
    SystemSettings::set({allEntries()});
    auto const inner = std::make_shared<Testing::ScriptedClient>(std::vector{ErrorCode::Ok});
    (void)addSystemProxyAdapter(inner)->get({HTTPS}, {});
    EXPECT_EQ(inner->calls().at(0).options.proxy, "https://secure.test:443");
}

TEST_F(NativeProxyProviderTest, LogsAnExceptionAndHasNoProxy) {
    SystemSettings settings{allEntries()};
    settings.onCopy = [] { throw std::logic_error(": full"); };
    ::testing::internal::CaptureStderr();  // Where glog writes until it is initialised.
    EXPECT_EQ(proxyFor(HTTP, settings), NONE);
    EXPECT_THAT(::testing::internal::GetCapturedStderr(),
                ContainsRegex("E[^\n]* NativeProxyProvider_mac.cpp:[0-9]+. "
                              "Error getting system proxy: full\n$"));

    auto const before = SnapshotCount::current();
    settings.onCopy = [] { throw 42; };
    EXPECT_THROW((void)proxyFor(HTTP, settings), int);
    EXPECT_EQ(SnapshotCount::current().released - before.released, 1);
}

}  // namespace
}  // namespace Ostrel::Networking
