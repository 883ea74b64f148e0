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

using ::testing::ElementsAre;
using ::testing::Pair;
using Testing::requestFor;
using Testing::ScriptedClient;

using Client = std::shared_ptr<IHttpClient>;
using Cookies = std::map<std::string, std::string>;

constexpr auto OK = ErrorCode::Ok;
constexpr auto LATE = ErrorCode::OperationTimedOut;

struct Provider : IProxyProvider {
    using Ask = std::function<ProxyInfo(std::string const&)>;
    explicit Provider(Ask answer) : ask(std::move(answer)) {}
    [[nodiscard]] ProxyInfo getProxy(std::string const& url) const override { return ask(url); }

    Ask ask;
};

/// An adapter, and what it changes of each call.
struct Adapter {
    std::string name;
    std::function<Client(Client const&)> addTo;
    std::function<void(Request&, Options&)> change = [](auto&, auto&) {};
};

std::vector<Adapter> adapters() {
    return {
        {"cookies", [](auto const& inner) { return addCookieJarAdapter(inner, nullptr); },
         [](auto& request, auto&) { request.cookies = {}; }},
        {"retries",
         [](auto const& inner) {
             return addRetriesAdapter(inner, {{7, nullptr}});
         },
         [](auto&, auto& options) { options.timeout = 7; }},
        {"https",
         [](auto const& inner) {
             return addForceProtocolAdapter(inner, ForceProtocolSettings::Https);
         },
         [](auto& request, auto&) { request.url.setProtocol("https"); }},
        {"unknown protocol",
         [](auto const& inner) {
             return addForceProtocolAdapter(inner, static_cast<ForceProtocolSettings>(2));
         }},
        {"system without a proxy", [](auto const& inner) { return addSystemProxyAdapter(inner); }},
        {"system with a proxy",
         [](NotNull<Client> const& inner) {
             return std::make_shared<SystemProxyAdapter>(
                 inner, std::make_unique<Provider>([](auto const&) {
                     return ProxyInfo{ProxyType::Socks, "system", 2};
                 }));
         },
         [](auto&, auto& options) { options.proxy = "proto://system:2"; }},
    };
}

auto fieldsOf(Request const& request) {
    return std::make_tuple(request.url.toString(), request.headers, request.cookies);
}

auto fieldsOf(Options const& o) {
    return std::make_tuple(o.lowSpeedLimit, o.lowSpeedTime, o.timeout, o.followRedirects,
                           o.maxRedirects, o.progressInterval, o.proxy);
}

auto fieldsOf(Response const& r) {
    return std::make_tuple(r.statusCode, r.body, r.headers, r.cookies, r.error.code,
                           r.error.message, r.statusLine, r.reason);
}

/// What the callbacks of `options` write into the text that they were made for.
std::string calledBy(Options const& options, std::string& called) {
    called.clear();
    options.onProgress(1, 2);
    options.isCancelled();
    options.onData("d");
    return called;
}

Options everyOption(std::string& called) {
    return {1,
            2,
            3,
            true,
            4,
            5,
            "http://proxy:1",
            [&called] { return called += 'c', true; },
            [&called](std::int64_t, std::int64_t) { called += 'p'; },
            [&called](std::string const& chunk) { called += chunk; }};
}

TEST(AdaptersTest, ChangeWhatIsTheirsPassOnTheRestAndRefuseAnEmptyClient) {
    std::string called;
    auto const options = everyOption(called);
    // A protocol for which no system has a proxy.
    Request const request{Url("proto://u:p@host.test:80/path?a=1#top"), {{"X", "1"}}, {{"c", "1"}}};
    Response const answer{503,           {"body"},          {{"X", "y"}}, {{"s", "1"}},
                          {LATE, "why"}, "HTTP/1.1 503 No", "No"};
    for (auto const& adapter : adapters()) {
        auto expectedRequest = request;
        auto expectedOptions = options;
        adapter.change(expectedRequest, expectedOptions);
        for (auto const& [operation, method, call] : Testing::operations()) {
            SCOPED_TRACE(adapter.name + ", " + operation);
            auto const inner = std::make_shared<ScriptedClient>();
            inner->answer(answer);
            inner->fail();
            auto const client = adapter.addTo(inner);
            EXPECT_EQ(inner.use_count(), 2) << "the adapter shares the inner client";
            auto const requestBefore = fieldsOf(request);
            auto const optionsBefore = fieldsOf(options);

            EXPECT_EQ(fieldsOf(call(*client, request, options)), fieldsOf(answer));

            auto const passed = inner->calls().at(0);
            EXPECT_EQ(passed.operation, operation);
            EXPECT_EQ(fieldsOf(passed.request), fieldsOf(expectedRequest));
            EXPECT_EQ(fieldsOf(passed.options), fieldsOf(expectedOptions));
            EXPECT_EQ(calledBy(passed.options, called), "pcd");
            EXPECT_EQ(passed.body, operation == "post body" ? &Testing::BODY
                                   : operation == "post form"
                                       ? static_cast<void const*>(&Testing::FORM)
                                       : nullptr);
            EXPECT_EQ(fieldsOf(request), requestBefore);
            EXPECT_EQ(fieldsOf(options), optionsBefore);
            EXPECT_THROW((void)call(*client, request, options), std::logic_error);
        }
        EXPECT_THROW((void)adapter.addTo(nullptr), std::invalid_argument) << adapter.name;
    }
}

TEST(ForceProtocolAdapterTest, ReplacesTheProtocolAndNothingElse) {
    Url withoutProtocol("http://host/");
    withoutProtocol.setProtocol("");
    std::vector<std::tuple<Url, ForceProtocolSettings, std::string>> const rows = {
        {Url("http://u:p@host:80/p?a=1#top"), ForceProtocolSettings::Https,
         "https://u:p@host:80/p?a=1#top"},
        {Url("https://host"), ForceProtocolSettings::Http, "http://host"},
        {Url("https://host"), ForceProtocolSettings::Https, "https://host"},
        {Url("HTTP://host/"), ForceProtocolSettings::Http, "http://host/"},
        {Url("ftp://host/"), ForceProtocolSettings::Https, "https://host/"},
        {withoutProtocol, ForceProtocolSettings::Https, "https://host/"},
    };
    for (auto const& [url, settings, expected] : rows) {
        auto const inner = std::make_shared<ScriptedClient>(std::vector{OK});

        (void)addForceProtocolAdapter(inner, settings)->get({url, {}, {}}, {});

        EXPECT_EQ(inner->calls().at(0).request.url.toString(), expected);
    }
}

TEST(RetriesAdapterTest, RepeatsAlongThePlanAsLongAsAttemptsTimeOut) {
    struct Row {
        std::vector<ErrorCode> outcomes;
        std::size_t plan;
    };
    for (auto const& [outcomes, plan] : std::vector<Row>{
             {{LATE}, 1},
             {{LATE, LATE, LATE}, 3},
             {{OK}, 3},
             {{LATE, ErrorCode::ConnectionFailure}, 3},
             {{ErrorCode::RequestCancelled}, 2},
             {{ErrorCode::NotPerformed}, 2},
             {{LATE, LATE, OK}, 3},
         }) {
        SCOPED_TRACE(::testing::PrintToString(outcomes));
        auto const inner = std::make_shared<ScriptedClient>(outcomes);
        std::vector<Retry> retries;
        for (std::size_t i = 0; i < plan; ++i) {
            retries.push_back({static_cast<std::int64_t>(100 * i), nullptr});
        }
        std::string called;
        auto const options = everyOption(called);
        Request const request;

        auto const response = addRetriesAdapter(inner, retries)->get(request, options);

        EXPECT_EQ(response.error.code, outcomes.back());
        EXPECT_EQ(response.error.message, "answer " + std::to_string(outcomes.size()));
        ASSERT_EQ(inner->calls().size(), outcomes.size());
        for (std::size_t i = 0; i < outcomes.size(); ++i) {
            auto const& call = inner->calls()[i];
            auto expected = options;
            expected.timeout = retries[i].timeout;
            EXPECT_EQ(fieldsOf(call.options), fieldsOf(expected));
            EXPECT_EQ(calledBy(call.options, called), "pcd");
            EXPECT_EQ(call.requestAddress, &request) << "the request was copied";
        }
    }
}

TEST(RetriesAdapterTest, UsesTheClientOfAnEntryForThatEntryOnly) {
    auto const inner = std::make_shared<ScriptedClient>(std::vector{LATE, OK});
    auto const other = std::make_shared<ScriptedClient>(std::vector{LATE, OK});
    auto const client = addRetriesAdapter(inner, {{1, nullptr}, {2, other}, {3, nullptr}});
    EXPECT_EQ(client->get({}, {}).error.code, OK);
    EXPECT_EQ(inner->calls().at(1).options.timeout, 3);
    EXPECT_EQ(other->calls().at(0).options.timeout, 2);

    EXPECT_EQ(RetriesAdapter(nullptr, {{1, other}}).head({}, {}).error.code, OK);
}

TEST(RetriesAdapterTest, RefusesAnEmptyPlan) {
    auto const inner = std::make_shared<ScriptedClient>();
    try {
        (void)addRetriesAdapter(inner, {});
        ADD_FAILURE() << "no exception";
    } catch (std::runtime_error const& error) {
        EXPECT_STREQ(error.what(), "Empty vector of retries provided");
    }
    EXPECT_EQ(inner.use_count(), 1);
}

TEST(CookieJarAdapterTest, SendsWhatTheJarHoldsForTheUrl) {
    auto const jar = std::make_shared<CookieJar>();
    jar->insertCookie({"sid", "short", Url("http://alpha.test/")});
    jar->insertCookie({"sid", "long", Url("http://alpha.test.eu/")});
    jar->insertCookie({"own", "1", Url("http://beta.test/")});
    std::vector<std::pair<std::string, Cookies>> const rows = {
        {"http://alpha.test/", {{"sid", "long"}}},  // Its id sorts first.
        {"https://alpha.test.eu:8080/path?a=1", {{"sid", "long"}}},
        {"http://beta.test/", {{"own", "1"}}},
        {"http://gamma.test/", {}},
        {"no URL", {{"sid", "long"}, {"own", "1"}}},
    };
    for (auto const& [url, expected] : rows) {
        auto const inner = std::make_shared<ScriptedClient>(std::vector{OK});

        (void)addCookieJarAdapter(inner, jar)->get({url, {}, {{"mine", "not sent"}}}, {});

        EXPECT_EQ(inner->calls().at(0).request.cookies, expected) << url;
    }
}

TEST(CookieJarAdapterTest, StoresTheCookiesOfEveryResponseUnderTheUrlOfTheRequest) {
    auto const jar = std::make_shared<CookieJar>();
    auto const request = requestFor("http://alpha.test:81/path");
    auto const url = request.url.toString();
    auto const stored = [&] {
        std::vector<std::string> texts;
        for (auto const& cookie : jar->cookiesForUrl(request.url)) {
            texts.push_back(cookie.name + "=" + cookie.value + " " + cookie.url.toString());
        }
        return texts;
    };
    auto const inner = std::make_shared<ScriptedClient>();
    auto const client = addCookieJarAdapter(inner, jar);

    inner->answer(OK, {{"sid", "1"}, {"b", "2"}});
    EXPECT_EQ(client->get(request, {}).cookies.size(), 2U);
    EXPECT_THAT(stored(), ElementsAre("b=2 " + url, "sid=1 " + url));

    inner->answer(LATE, {{"sid", ""}});
    (void)client->get(request, {});
    EXPECT_THAT(inner->calls().at(1).request.cookies,
                ElementsAre(Pair("b", "2"), Pair("sid", "1")));
    inner->answer(OK);
    (void)client->get(request, {});
    EXPECT_THAT(stored(), ElementsAre("b=2 " + url, "sid= " + url));
}

TEST(CookieJarAdapterTest, HasAJarOfItsOwnIfItGetsNone) {
    auto const inner = std::make_shared<ScriptedClient>();
    auto const one = addCookieJarAdapter(inner, nullptr);
    auto const other = addCookieJarAdapter(inner, nullptr);
    inner->answer(OK, {{"sid", "1"}});
    inner->answer(OK);
    inner->answer(OK);

    for (auto const& client : {&one, &other, &one}) {
        (void)(*client)->get(requestFor("http://alpha.test/"), {});
    }
    EXPECT_EQ(inner->calls().at(1).request.cookies.size(), 0U);
    EXPECT_EQ(inner->calls().at(2).request.cookies.size(), 1U);
}

TEST(SystemProxyAdapterTest, PutsTheProxyOfTheSystemInPlaceOfTheCallers) {
    struct Row {
        std::string url;
        ProxyInfo answer;
        std::string expected;
    };
    for (auto const& [url, answer, expected] : std::vector<Row>{
             {"http://a.test/", {ProxyType::Http, "proxy.test", 3128}, "http://proxy.test:3128"},
             {"https://a.test/", {ProxyType::Https, "10.0.0.1", 65536}, "https://10.0.0.1:65536"},
             // The protocol is that of the URL, whatever the kind of the proxy.
             {"https://a.test/", {ProxyType::Socks, "proxy.test", 1080}, "https://proxy.test:1080"},
             {"a_b://a.test/", {ProxyType::Http, "h", 1}, "a_b://h:1"},
             // Nothing is checked.
             {"http://a.test/", {ProxyType::Http, "", 0}, "http://:0"},
             {"http://a.test/", {ProxyType::Http, " H/@?", -1}, "http:// H/@?:-1"},
             {"", {ProxyType::Http, "h", 1}, "://h:1"},
             // Without a proxy, host and port mean nothing.
             {"http://a.test/", {ProxyType::None, "proxy.test", 3128}, "own://proxy:1"},
         }) {
        std::vector<std::string> asked;
        SystemProxyAdapter const adapter(
            nullptr, std::make_unique<Provider>([&asked, &proxy = answer](auto const& text) {
                return asked.push_back(text), proxy;
            }));
        Options options;
        options.proxy = "own://proxy:1";

        EXPECT_EQ(adapter.addProxyUrlOption(options, requestFor(url)).proxy, expected);
        EXPECT_EQ(adapter.addProxyUrlOption({}, requestFor(url)).proxy,
                  answer.type == ProxyType::None ? "" : expected);
        EXPECT_THAT(asked, ElementsAre(url, url)) << "asked anew for every call";
    }
}

}  // namespace
}  // namespace Ostrel::Networking
