#include "Networking/NativeProxyProvider/NativeProxyProvider.h"

#include <new>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

#include <glog/logging.h>
#include <gmock/gmock.h>

#include "platform/SystemSettings.h"

namespace Ostrel::Networking {
namespace {

using ::Platform::SnapshotCount;
using ::Platform::SystemSettings;
using ::testing::AnyOf;
using ::testing::ElementsAre;
using Values = decltype(SystemSettings::values);

Values allEntries() {
    return {{kSCPropNetProxiesHTTPEnable, 1},  {kSCPropNetProxiesHTTPProxy, u"plain.test"},
            {kSCPropNetProxiesHTTPPort, 80},   {kSCPropNetProxiesHTTPSEnable, 1},
            {kSCPropNetProxiesHTTPSPort, 443}, {kSCPropNetProxiesHTTPSProxy, u"secure.test"},
            {kSCPropNetProxiesSOCKSEnable, 1}, {kSCPropNetProxiesSOCKSProxy, u"socks.test"},
            {kSCPropNetProxiesSOCKSPort, 1080}};
}

Values with(void const* key, SystemSettings::Value const& value) {
    auto values = allEntries();
    values[key] = value;
    return values;
}

Values without(void const* key) {
    auto values = allEntries();
    values.erase(key);
    return values;
}

std::string textOf(ProxyInfo const& proxy) {
    return std::to_string(static_cast<int>(proxy.type)) + " " + proxy.host + ":" +
           std::to_string(proxy.port);
}

/// Expects, at its end, that so many snapshots were taken and released in its time.
struct ExpectSnapshots {
    int count;
    SnapshotCount before = SnapshotCount::current();

    ~ExpectSnapshots() {
        EXPECT_EQ(SnapshotCount::current().taken - before.taken, count);
        EXPECT_EQ(SnapshotCount::current().released - before.released, count);
    }
};

class NativeProxyProviderTest : public ::testing::Test {
protected:
    ~NativeProxyProviderTest() override { SystemSettings::set({}); }

    static std::string proxyFor(std::string const& url, SystemSettings settings,
                                int snapshots = 1) {
        SystemSettings::set(std::move(settings));
        ExpectSnapshots const expected{snapshots};
        return textOf(NativeProxyProvider().getProxy(url));
    }
};

TEST_F(NativeProxyProviderTest, TakesTheEntryOfTheProtocol) {
    std::string const none = "0 :0";
    std::string const plain = "1 plain.test:80";
    std::string const http = "http://a.test";
    std::string const https = "https://u:p@a.test:8/b?c=d#e";
    std::string const socks = "socks://a.test";
    auto const host = kSCPropNetProxiesHTTPSProxy;
    auto const port = kSCPropNetProxiesHTTPSPort;
    struct Row {
        std::string url;
        Values values;
        std::string proxy;
        int snapshots = 1;
    };
    for (auto const& row : std::vector<Row>{
             {http, allEntries(), plain},
             {https, allEntries(), "2 secure.test:443"},
             {socks, allEntries(), "4 socks.test:1080"},
             // Protocols without an entry, and texts without a protocol.
             {"HTTP://a.test", allEntries(), none, 0},
             {"Https://a.test", allEntries(), none, 0},
             {"socks5://a.test", allEntries(), none, 0},
             {"ftp://a.test", allEntries(), none, 0},
             {"http:/a.test", allEntries(), none, 0},
             {"", allEntries(), none, 0},
             // Nothing is set, or not all that is needed.
             {http, {}, none},
             {http, without(host), plain},
             // The flag counts by its presence.
             {http, with(kSCPropNetProxiesHTTPEnable, 0), plain},
             {http, with(kSCPropNetProxiesHTTPEnable, u"no"), plain},
             // The host is taken as it is.
             {https, with(host, u""), "2 :443"},
             {https, with(host, u" Proxy_1/\t"), "2  Proxy_1/\t:443"},
             {https, with(host, std::u16string(u"a\0b", 3)), "2 a:443"},
             {https, with(host, std::u16string(5000, u'h')),
              "2 " + std::string(5000, 'h') + ":443"},
             // Longer in UTF-8 than in UTF-16, not to be converted, no text.
             {https, with(host, u"pr\u00f6xy.test"), none},
             {https, with(host, u"\U0001F600"), none},
             {https, with(host, u"proxy\xd800.test"), none},
             {https, with(host, 1), none},
             // A port out of range, too large for 32 bits, no number.
             {https, with(port, -1), "2 secure.test:-1"},
             {https, with(port, 2147483647), "2 secure.test:2147483647"},
             {https, with(port, 4294967296 + 8080), "2 secure.test:8080"},
             {https, with(port, u"8080"), "2 secure.test:0"},
         }) {
        SCOPED_TRACE(row.url);
        EXPECT_EQ(proxyFor(row.url, {row.values}, row.snapshots), row.proxy);
    }
    for (auto const& [key, value] : allEntries()) {
        auto const withoutKey = proxyFor(http, {without(key)}) +
                                proxyFor(https, {without(key)}, 1) +
                                proxyFor(socks, {without(key)});
        EXPECT_NE(withoutKey.find(none), std::string::npos) << "an entry that is not whole";
    }
    EXPECT_EQ(proxyFor(http, {allEntries(), false}, 0), none) << "settings that cannot be read";
}

/// Keeps what is logged while it lives.
class Log : public google::LogSink {
public:
    Log() { google::AddLogSink(this); }
    ~Log() override { google::RemoveLogSink(this); }

    using google::LogSink::send;
    void send(google::LogSeverity severity, char const*, char const* file, int,
              google::LogMessageTime const&, char const* message, std::size_t size) override {
        lines.push_back(std::string(google::GetLogSeverityName(severity)) + " " + file + " " +
                        std::string(message, size));
    }

    std::vector<std::string> lines;
};

TEST_F(NativeProxyProviderTest, LogsAnExceptionAndHasNoProxy) {
    Log log;
    SystemSettings settings{allEntries()};

    settings.onCopy = [] { throw std::runtime_error(": full"); };
    EXPECT_EQ(proxyFor("http://a.test", settings), "0 :0");
    settings.onCopy = [] { throw std::bad_alloc(); };
    EXPECT_EQ(proxyFor("socks://a.test", settings), "0 :0");
    settings.onCopy = [] { throw 42; };
    EXPECT_THROW(proxyFor("http://a.test", settings), int);

    EXPECT_THAT(
        log.lines,
        ElementsAre("ERROR NativeProxyProvider_mac.cpp Error getting system proxy: full",
                    "ERROR NativeProxyProvider_mac.cpp Error getting system proxystd::bad_alloc"));
}

TEST_F(NativeProxyProviderTest, ServesSeveralThreadsWhileTheSettingsChange) {
    ExpectSnapshots const expected{800};
    std::vector<std::thread> threads(4);
    for (auto& thread : threads) {
        thread = std::thread([] {
            for (int i = 0; i < 200; ++i) {
                auto const host = NativeProxyProvider().getProxy("https://a.test").host;
                EXPECT_THAT(host, AnyOf("", "one", "two"));
            }
        });
    }
    for (int i = 0; i < 200; ++i) {
        SystemSettings::set({with(kSCPropNetProxiesHTTPSProxy, i % 2 ? u"one" : u"two")});
    }
    for (auto& thread : threads) {
        thread.join();
    }
}

}  // namespace
}  // namespace Ostrel::Networking
