#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "Networking/AddAdapter.h"
#include "Networking/CookieJar/CookieJar.h"
#include "tests/Support/Operations.h"
#include "tests/Support/ScriptedClient.h"

namespace Ostrel::Networking {
namespace {

using namespace Testing;
using Testing::fieldsOf;
using ::testing::Return;
using ::testing::Throw;
using ::testing::ThrowsMessage;

using Client = std::shared_ptr<IHttpClient>;
using Cookies = std::map<std::string, std::string>;

constexpr auto OK = ErrorCode::Ok;
constexpr auto LATE = ErrorCode::OperationTimedOut;

std::vector<Retry> const ONE_ATTEMPT = {{7}};

Options everyOption() {
    Options options;
    options.lowSpeedLimit = 1;
    options.lowSpeedTime = 2;
    options.timeout = 3;
    options.followRedirects = true;
    options.maxRedirects = 4;
    options.progressInterval = 5;
    options.proxy = "own://proxy:1";
    options.isCancelled = [] { return true; };
    options.onProgress = [](auto, auto) {};
    options.onData = [](auto const&) {};
    return options;
}

auto fieldsOf(ScriptedClient::Call const& call) {
    auto const& o = call.options;
    return std::make_tuple(call.operation, call.body, call.request.url.toString(),
                           call.request.headers, call.request.cookies, o.lowSpeedLimit,
                           o.lowSpeedTime, o.timeout, o.followRedirects, o.maxRedirects,
                           o.progressInterval, o.proxy, o.isCancelled && o.onProgress && o.onData);
}

struct MockProvider : IProxyProvider {
    MOCK_METHOD(ProxyInfo, getProxy, (std::string const& url), (const, override));
};

Client addProvider(NotNull<Client> const& inner) {
    auto provider = std::make_unique<MockProvider>();
    EXPECT_CALL(*provider, getProxy)
        .WillRepeatedly(Return(ProxyInfo{ProxyType::Socks, "system", 2}));
    return std::make_shared<SystemProxyAdapter>(inner, std::move(provider));
}

/// Which argument an adapter passes on as a copy.
enum class Copied { Request, Options };

/// An adapter, and what it changes of each call.
struct Adapter {
    std::string name;
    Copied copied;
    std::function<Client(Client const&)> addTo;
    std::function<void(Request&, Options&)> change = [](auto&, auto&) {};
};

std::vector<Adapter> adapters() {
    constexpr auto HTTP = ForceProtocolSettings::Http;
    constexpr auto HTTPS = ForceProtocolSettings::Https;
    constexpr auto UNKNOWN = static_cast<ForceProtocolSettings>(2);
    return {
        {"cookies", Copied::Request,
         [](auto& inner) { return addCookieJarAdapter(inner, nullptr); },
         [](auto& request, auto&) { request.cookies = {}; }},
        {"retries", Copied::Options,
         [](auto& inner) { return addRetriesAdapter(inner, ONE_ATTEMPT); },
         [](auto&, auto& options) { options.timeout = 7; }},
        {"https", Copied::Request,
         [](auto& inner) { return addForceProtocolAdapter(inner, HTTPS); },
         [](auto& request, auto&) { request.url.setProtocol("https"); }},
        {"http", Copied::Request, [](auto& inner) { return addForceProtocolAdapter(inner, HTTP); },
         [](auto& request, auto&) { request.url.setProtocol("http"); }},
        {"unknown", Copied::Request,
         [](auto& inner) { return addForceProtocolAdapter(inner, UNKNOWN); }},
        {"no system proxy", Copied::Options,
         [](auto& inner) { return addSystemProxyAdapter(inner); }},
        {"system proxy", Copied::Options, addProvider,
         [](auto&, auto& options) { options.proxy = "proto://system:2"; }},
    };
}

TEST(AdaptersTest, ChangeWhatIsTheirsPassOnTheRestAndRefuseAnEmptyClient) {
    // A protocol for which no system has a proxy.
    Request const request{Url("proto://u:p@host.test:80/path?a=1#top"), {{"X", "1"}}, {{"c", "1"}}};
    auto const options = everyOption();
    for (auto const& [name, copied, addTo, change] : adapters()) {
        auto expectedRequest = request;
        auto expectedOptions = everyOption();
        change(expectedRequest, expectedOptions);
        for (auto const& operation : operations()) {
            SCOPED_TRACE(name + ", " + operation.name);
            auto const inner = std::make_shared<ScriptedClient>();
            ScriptedClient direct;
            inner->answer(LATE, {{"s", "1"}});
            direct.answer(LATE, {{"s", "1"}});
            auto const client = addTo(inner);
            EXPECT_EQ(inner.use_count(), 2) << "the adapter shares the inner client";

            auto const response = operation.call(*client, request, options);

            EXPECT_EQ(fieldsOf(response),
                      fieldsOf(operation.call(direct, expectedRequest, expectedOptions)));
            auto const& call = inner->calls().at(0);
            EXPECT_EQ(fieldsOf(call), fieldsOf(direct.calls().at(0)));
            EXPECT_EQ(call.requestAddress == &request, copied != Copied::Request);
            EXPECT_EQ(call.optionsAddress == &options, copied != Copied::Options);
            EXPECT_THROW((void)operation.call(*client, request, options), std::logic_error);
        }
        EXPECT_THROW((void)addTo(nullptr), std::invalid_argument) << name;
    }
}

TEST(RetriesAdapterTest, RepeatsAlongThePlanAsLongAsAttemptsTimeOut) {
    std::vector<Retry> const retries = {{0}, {100}, {200}};
    std::vector<std::vector<ErrorCode>> const rows = {
        {LATE, LATE, LATE},
        {LATE, LATE, OK},
        {OK},
        {ErrorCode::RequestCancelled},
        {ErrorCode::ConnectionFailure},
        {ErrorCode::NotPerformed},
    };
    for (auto const& outcomes : rows) {
        SCOPED_TRACE(::testing::PrintToString(outcomes));
        auto const inner = std::make_shared<ScriptedClient>(outcomes);

        auto const response = addRetriesAdapter(inner, retries)->get({}, everyOption());

        EXPECT_EQ(response.error.message, "answer " + std::to_string(outcomes.size()));
        ASSERT_EQ(inner->calls().size(), outcomes.size());
        for (std::size_t i = 0; i < outcomes.size(); ++i) {
            auto options = everyOption();
            options.timeout = retries[i].timeout;
            EXPECT_EQ(fieldsOf(inner->calls()[i]), fieldsOf({"get", {}, options}));
        }
    }
}

TEST(RetriesAdapterTest, UsesTheClientOfAnEntryForThatEntryOnly) {
    auto const inner = std::make_shared<ScriptedClient>(std::vector{LATE});
    auto const first = std::make_shared<ScriptedClient>(std::vector{LATE});
    auto const third = std::make_shared<ScriptedClient>(std::vector{OK, OK});
    (void)addRetriesAdapter(inner, {{1, first}, {2}, {3, third}})->get({}, {});
    EXPECT_EQ(first->calls().at(0).options.timeout, 1);
    EXPECT_EQ(inner->calls().at(0).options.timeout, 2);
    EXPECT_EQ(third->calls().at(0).options.timeout, 3);
    EXPECT_EQ(RetriesAdapter(nullptr, {{1, third}}).head({}, {}).error.code, OK);
}

TEST(RetriesAdapterTest, RefusesAnEmptyPlan) {
    EXPECT_THAT([] { (void)addRetriesAdapter(std::make_shared<ScriptedClient>(), {}); },
                ThrowsMessage<std::runtime_error>("Empty vector of retries provided"));
}

TEST(CookieJarAdapterTest, SendsWhatTheJarHoldsForTheUrl) {
    auto const jar = std::make_shared<CookieJar>();
    jar->insertCookie({"sid", "short", Url("http://alpha.test/")});
    jar->insertCookie({"sid", "long", Url("http://alpha.test.eu/")});
    jar->insertCookie({"own", "1", Url("http://beta.test/")});
    std::vector<std::pair<std::string, Cookies>> const rows = {
        {"https://alpha.test:8080/path?a=1", {{"sid", "long"}}},  // Its id sorts first.
        {"http://beta.test/", {{"own", "1"}}},
        {"no URL", {{"sid", "long"}, {"own", "1"}}},
    };
    for (auto const& [url, expected] : rows) {
        auto const inner = std::make_shared<ScriptedClient>(std::vector{OK});
        (void)addCookieJarAdapter(inner, jar)->get(requestFor(url), {});
        EXPECT_EQ(inner->calls().at(0).request.cookies, expected) << url;
    }
}

TEST(CookieJarAdapterTest, StoresTheCookiesOfEveryResponseUnderTheUrlOfTheRequest) {
    auto const jar = std::make_shared<CookieJar>();
    Request const request{Url("http://alpha.test:81/path"), {}, {{"own", "is not stored"}}};
    auto const inner = std::make_shared<ScriptedClient>();
    inner->answer(OK, {{"sid", "1"}, {"b", "2"}});
    inner->answer(LATE, {{"sid", ""}});
    inner->answer(OK);
    for (std::string const sid : {"1", "", ""}) {
        (void)addCookieJarAdapter(inner, jar)->get(request, {});
        Cookies stored;
        for (auto const& cookie : jar->cookiesForUrl(request.url)) {
            EXPECT_EQ(cookie.url.toString(), request.url.toString());
            stored.emplace(cookie.name, cookie.value);
        }
        EXPECT_EQ(stored, (Cookies{{"b", "2"}, {"sid", sid}}));
    }
}

TEST(CookieJarAdapterTest, HasAJarOfItsOwnIfItGetsNone) {
    auto const inner = std::make_shared<ScriptedClient>();
    auto const one = addCookieJarAdapter(inner, nullptr);
    auto const other = addCookieJarAdapter(inner, nullptr);
    for (auto const& client : {&one, &other, &one}) {
        inner->answer(OK, {{"sid", "1"}});
        (void)(*client)->get(requestFor("http://alpha.test/"), {});
    }
    EXPECT_EQ(inner->calls().at(1).request.cookies.size(), 0U);
    EXPECT_EQ(inner->calls().at(2).request.cookies.size(), 1U);
}

TEST(SystemProxyAdapterTest, PutsTheProxyOfTheSystemInPlaceOfTheCallers) {
    using Row = std::tuple<std::string, ProxyInfo, std::string>;
    for (auto const& [url, answer, expected] : std::vector<Row>{
             {"http://a.test/", {ProxyType::Http, "proxy.test", 3128}, "http://proxy.test:3128"},
             // The protocol is that of the URL, whatever the kind of the proxy.
             {"https://a.test/", {ProxyType::Socks, "10.0.0.1", 65536}, "https://10.0.0.1:65536"},
             // Nothing is checked.
             {"http://a.test/", {ProxyType::Http, " H/@?", -1}, "http:// H/@?:-1"},
             {"", {ProxyType::Https, "", 1}, "://:1"},
             // Without a proxy, host and port mean nothing.
             {"http://a.test/", {ProxyType::None, "proxy.test", 3128}, "own://proxy:1"},
         }) {
        auto provider = std::make_unique<MockProvider>();
        // Asked anew for every call.
        EXPECT_CALL(*provider, getProxy(url)).Times(2).WillRepeatedly(Return(answer));
        SystemProxyAdapter const adapter(nullptr, std::move(provider));
        (void)adapter.addProxyUrlOption({}, requestFor(url));
        EXPECT_EQ(adapter.addProxyUrlOption(everyOption(), requestFor(url)).proxy, expected);
    }
}

TEST(SystemProxyAdapterTest, PassesOnAnExceptionOfTheProvider) {
    auto provider = std::make_unique<MockProvider>();
    EXPECT_CALL(*provider, getProxy).WillOnce(Throw(std::logic_error("no settings")));
    SystemProxyAdapter client(std::make_shared<ScriptedClient>(), std::move(provider));
    EXPECT_THAT([&client] { (void)client.get({}, {}); },
                ThrowsMessage<std::logic_error>("no settings"));
}

}  // namespace
}  // namespace Ostrel::Networking
