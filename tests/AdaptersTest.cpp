#include <functional>
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
using Testing::operations;
using ::testing::Pair;
using Testing::ScriptedClient;

using Client = std::shared_ptr<IHttpClient>;
using Cookies = std::map<std::string, std::string>;

/// Every adapter, by its factory.
std::vector<std::pair<std::string, std::function<Client(Client const&)>>> factories() {
    return {
        {"cookies", [](auto const& inner) { return addCookieJarAdapter(inner, nullptr); }},
        {"retries",
         [](auto const& inner) {
             return addRetriesAdapter(inner, {{7, nullptr}});
         }},
        {"http",
         [](auto const& inner) {
             return addForceProtocolAdapter(inner, ForceProtocolSettings::Http);
         }},
        {"unknown protocol",
         [](auto const& inner) {
             return addForceProtocolAdapter(inner, static_cast<ForceProtocolSettings>(2));
         }},
        {"system proxy", [](auto const& inner) { return addSystemProxyAdapter(inner); }},
    };
}

auto fieldsOf(Request const& request) {
    return std::make_tuple(request.url.toString(), request.headers, request.cookies);
}

/// What no adapter changes; `timeout` is the retries' own.
auto fieldsOf(Options const& o) {
    return std::make_tuple(o.lowSpeedLimit, o.lowSpeedTime, o.followRedirects, o.maxRedirects,
                           o.progressInterval, o.proxy);
}

auto fieldsOf(Response const& r) {
    return std::make_tuple(r.statusCode, r.body, r.headers, r.cookies, r.error.code,
                           r.error.message, r.statusLine, r.reason);
}

TEST(AdaptersTest, PassOnWhatIsNotTheirs) {
    std::string called;
    Options const options{1,
                          2,
                          3,
                          true,
                          4,
                          5,
                          "http://proxy:1",
                          [&called] { return called += 'c', true; },
                          [&called](std::int64_t, std::int64_t) { called += 'p'; },
                          [&called](std::string const& chunk) { called += chunk; }};
    Request request;
    request.url = std::string("http://u:p@host.test:80/path?a=1#top");
    request.headers = {{"X-One", "1"}};
    ScriptedClient::Answer answer;
    answer.response.statusCode = 503;
    answer.response.body = "body";
    answer.response.headers = {{"X", "y"}};
    answer.response.cookies = {{"sid", "1"}};
    answer.response.error.code = ErrorCode::NetworkReceiveError;
    answer.response.error.message = "message";
    answer.response.statusLine = "HTTP/1.1 503 No";
    answer.response.reason = "No";

    for (auto const& [adapterName, addAdapter] : factories()) {
        for (auto const& [operation, method, call] : operations()) {
            SCOPED_TRACE(adapterName + ", " + operation);
            auto const inner = std::make_shared<ScriptedClient>();
            auto const client = addAdapter(inner);
            EXPECT_EQ(inner.use_count(), 2) << "the adapter shares the inner client";
            inner->answer(answer);
            inner->fail("thrown inside");
            auto const requestBefore = fieldsOf(request);

            EXPECT_EQ(fieldsOf(call(*client, request, options)), fieldsOf(answer.response));

            ASSERT_EQ(inner->calls().size(), 1U);
            auto const& passed = inner->calls().front();
            EXPECT_EQ(passed.operation, operation);
            EXPECT_EQ(fieldsOf(passed.request), requestBefore);
            EXPECT_EQ(fieldsOf(passed.options), fieldsOf(options));
            EXPECT_EQ(passed.body, operation == "post body" ? &Testing::BODY
                                   : operation == "post form"
                                       ? static_cast<void const*>(&Testing::FORM)
                                       : nullptr);
            called.clear();
            passed.options.onProgress(1, 2);
            passed.options.isCancelled();
            passed.options.onData("d");
            EXPECT_EQ(called, "pcd");
            EXPECT_EQ(fieldsOf(request), requestBefore);
            EXPECT_EQ(options.timeout, 3);

            EXPECT_THROW((void)call(*client, request, options), std::logic_error);
        }
    }
}

TEST(AdaptersTest, RefuseAnEmptyInnerClient) {
    for (auto const& [name, addAdapter] : factories()) {
        EXPECT_THROW((void)addAdapter(nullptr), std::invalid_argument) << name;
    }
}

TEST(ForceProtocolAdapterTest, ReplacesTheProtocolAndNothingElse) {
    constexpr auto UNKNOWN = static_cast<ForceProtocolSettings>(2);
    Url withoutProtocol(std::string("http://host/"));
    withoutProtocol.setProtocol("");
    std::vector<std::tuple<Url, ForceProtocolSettings, std::string>> const rows = {
        {std::string("http://u:p@host:80/p?a=1#top"), ForceProtocolSettings::Https,
         "https://u:p@host:80/p?a=1#top"},
        {std::string("https://host"), ForceProtocolSettings::Http, "http://host"},
        {std::string("https://host"), ForceProtocolSettings::Https, "https://host"},
        {std::string("HTTP://host/"), ForceProtocolSettings::Http, "http://host/"},
        {std::string("ftp://host/"), ForceProtocolSettings::Https, "https://host/"},
        {std::string("ftp://host/"), UNKNOWN, "ftp://host/"},
        {withoutProtocol, ForceProtocolSettings::Https, "https://host/"},
    };
    for (auto const& [url, settings, expected] : rows) {
        SCOPED_TRACE(expected);
        auto const inner = std::make_shared<ScriptedClient>(std::vector{ErrorCode::Ok});
        Request request;
        request.url = url;

        (void)addForceProtocolAdapter(inner, settings)->get(request, Options());

        EXPECT_EQ(inner->calls().front().request.url.toString(), expected);
        EXPECT_EQ(request.url.protocol(), url.protocol());
    }
}

TEST(RetriesAdapterTest, RepeatsAlongThePlanAsLongAsAttemptsTimeOut) {
    constexpr auto LATE = ErrorCode::OperationTimedOut;
    struct Row {
        std::string name;
        std::vector<ErrorCode> outcomes;
        std::size_t plan;
    };
    for (auto const& [name, outcomes, plan] : std::vector<Row>{
             {"one entry, late", {LATE}, 1},
             {"all late", {LATE, LATE, LATE}, 3},
             {"first in time", {ErrorCode::Ok}, 3},
             {"second fails otherwise", {LATE, ErrorCode::ConnectionFailure}, 3},
             {"cancelled", {ErrorCode::RequestCancelled}, 2},
             {"not performed", {ErrorCode::NotPerformed}, 2},
             {"last in time", {LATE, LATE, ErrorCode::Ok}, 3},
         }) {
        SCOPED_TRACE(name);
        auto const inner = std::make_shared<ScriptedClient>(outcomes);
        std::vector<Retry> retries;
        for (std::size_t i = 0; i < plan; ++i) {
            retries.push_back({static_cast<std::int64_t>(100 * (i + 1)), nullptr});
        }
        Options options;
        options.timeout = 1;
        Request const request;

        auto const response = addRetriesAdapter(inner, retries)->get(request, options);

        EXPECT_EQ(response.error.code, outcomes.back());
        EXPECT_EQ(response.error.message, "answer " + std::to_string(outcomes.size()));
        ASSERT_EQ(inner->calls().size(), outcomes.size());
        for (std::size_t i = 0; i < outcomes.size(); ++i) {
            EXPECT_EQ(inner->calls()[i].options.timeout, retries[i].timeout);
            EXPECT_EQ(inner->calls()[i].requestAddress, &request) << "the request was copied";
        }
    }
}

TEST(RetriesAdapterTest, UsesTheClientOfTheEntryAndNoOther) {
    auto const inner = std::make_shared<ScriptedClient>(std::vector{ErrorCode::OperationTimedOut});
    auto const fallback = std::make_shared<ScriptedClient>(std::vector{ErrorCode::Ok});
    EXPECT_EQ(addRetriesAdapter(inner, {{1, nullptr}, {2, fallback}})->get({}, {}).error.code,
              ErrorCode::Ok);
    EXPECT_EQ(inner->calls().size(), 1U);
    EXPECT_EQ(fallback->calls().size(), 1U);

    fallback->answer(ErrorCode::Ok);
    EXPECT_EQ(RetriesAdapter(nullptr, {{1, fallback}}).head({}, {}).error.code, ErrorCode::Ok);
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

Cookie cookieOf(std::string const& name, std::string const& value, std::string const& host) {
    return {name, value, Url("http://" + host + "/")};
}

TEST(CookieJarAdapterTest, SendsWhatTheJarHoldsForTheUrl) {
    auto const jar = std::make_shared<CookieJar>();
    for (auto const& cookie :
         {cookieOf("sid", "short", "alpha.test"), cookieOf("sid", "long", "alpha.test.eu"),
          cookieOf("own", "1", "beta.test")}) {
        jar->insertCookie(cookie);
    }
    std::vector<std::pair<std::string, Cookies>> const rows = {
        {"http://alpha.test/", {{"sid", "long"}}},  // Its id sorts first.
        {"https://alpha.test.eu:8080/path?a=1", {{"sid", "long"}}},
        {"http://beta.test/", {{"own", "1"}}},
        {"http://gamma.test/", {}},
        {"no URL", {{"sid", "long"}, {"own", "1"}}},
    };
    for (auto const& [url, expected] : rows) {
        SCOPED_TRACE(url);
        auto const inner = std::make_shared<ScriptedClient>(std::vector{ErrorCode::Ok});
        Request request;
        request.url = url;
        request.cookies = {{"mine", "not sent"}};

        (void)addCookieJarAdapter(inner, jar)->get(request, {});

        EXPECT_EQ(inner->calls().front().request.cookies, expected);
        EXPECT_EQ(request.cookies.count("mine"), 1U);
    }
}

TEST(CookieJarAdapterTest, StoresTheCookiesOfEveryResponseUnderTheUrlOfTheRequest) {
    auto const jar = std::make_shared<CookieJar>();
    Request request;
    request.url = std::string("http://alpha.test:81/path");
    auto const stored = [&jar, &request] {
        std::vector<std::string> texts;
        for (auto const& cookie : jar->cookiesForUrl(request.url)) {
            texts.push_back(cookie.name + "=" + cookie.value + " " + cookie.url.toString());
        }
        return texts;
    };
    auto const url = request.url.toString();
    auto const inner = std::make_shared<ScriptedClient>();
    auto const client = addCookieJarAdapter(inner, jar);

    inner->answer(ErrorCode::Ok, {{"sid", "1"}, {"b", "2"}});
    EXPECT_EQ(client->get(request, {}).cookies.size(), 2U);
    EXPECT_THAT(stored(), ElementsAre("b=2 " + url, "sid=1 " + url));

    inner->answer(ErrorCode::OperationTimedOut, {{"sid", "3"}});
    (void)client->get(request, {});
    EXPECT_THAT(stored(), ElementsAre("b=2 " + url, "sid=3 " + url));
    EXPECT_THAT(inner->calls()[1].request.cookies, ElementsAre(Pair("b", "2"), Pair("sid", "1")));

    inner->fail("thrown inside");
    EXPECT_THROW((void)client->get(request, {}), std::logic_error);
    inner->answer(ErrorCode::Ok);
    (void)client->get(request, {});
    EXPECT_THAT(stored(), ElementsAre("b=2 " + url, "sid=3 " + url));
}

TEST(CookieJarAdapterTest, HasAJarOfItsOwnIfItGetsNone) {
    auto const inner = std::make_shared<ScriptedClient>();
    auto const one = addCookieJarAdapter(inner, nullptr);
    auto const other = addCookieJarAdapter(inner, nullptr);
    Request request;
    request.url = std::string("http://alpha.test/");
    inner->answer(ErrorCode::Ok, {{"sid", "1"}});
    inner->answer(ErrorCode::Ok);
    inner->answer(ErrorCode::Ok);

    (void)one->get(request, {});
    (void)other->get(request, {});
    (void)one->get(request, {});

    EXPECT_EQ(inner->calls()[1].request.cookies.size(), 0U);
    EXPECT_EQ(inner->calls()[2].request.cookies.size(), 1U);
}

}  // namespace
}  // namespace Ostrel::Networking
