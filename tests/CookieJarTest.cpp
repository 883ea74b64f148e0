#include "Networking/CookieJar/CookieJar.h"

#include <map>
#include <random>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

namespace Ostrel::Networking {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

static_assert(!std::is_copy_constructible_v<CookieJar> && !std::is_move_constructible_v<CookieJar>);

Cookie cookieOf(std::string name, std::string value, std::string const& host) {
    Cookie cookie{std::move(name), std::move(value), Url()};
    cookie.url.setHost(host);
    return cookie;
}

Url urlOf(std::string const& host) { return cookieOf("", "", host).url; }

std::vector<std::string> textsOf(std::vector<Cookie> const& cookies) {
    std::vector<std::string> texts;
    for (auto const& cookie : cookies) {
        texts.push_back(cookie.url.host() + " " + cookie.name + "=" + cookie.value);
    }
    return texts;
}

TEST(CookieJarTest, SelectsByPrefixOfHostAndName) {
    CookieJar jar;
    EXPECT_THAT(jar.cookiesForUrl(urlOf("")), IsEmpty());
    EXPECT_FALSE(jar.deleteCookie(cookieOf("a", "", "alpha.test")));
    for (auto const& cookie :
         {cookieOf("b", "1", "alpha.test"), cookieOf("a", "2", "alpha.test"),
          cookieOf("a", "3", "alpha.test.eu"), cookieOf(".testing", "4", "alpha"),
          cookieOf("a", "5", "web.alpha.test"), cookieOf("a", "6", "ALPHA.TEST"),
          cookieOf("alpha.test", "7", ""), cookieOf("a", "8", "\xff\xff")}) {
        jar.insertCookie(cookie);
    }
    std::vector<std::pair<std::string, std::vector<std::string>>> const rows = {
        {"alpha.test",
         {" alpha.test=7", "alpha.test.eu a=3", "alpha.test a=2", "alpha.test b=1",
          "alpha .testing=4"}},
        {"alpha.testing", {"alpha .testing=4"}},
        {"web", {"web.alpha.test a=5"}},
        {"\xff", {"\xff\xff a=8"}},
        {"\xff\xff\xff", {}},
        {"beta", {}},
    };
    for (auto const& [host, expected] : rows) {
        EXPECT_EQ(textsOf(jar.cookiesForUrl(urlOf(host))), expected) << host;
    }
    EXPECT_EQ(jar.cookiesForUrl(urlOf("")).size(), 8U);
}

TEST(CookieJarTest, ReplacesACookieAsAWhole) {
    CookieJar jar;
    jar.insertCookie({"sid", "1", Url("https://alpha.test/a")});
    jar.insertCookie({"sid", "2", Url("http://alpha.test:8080/b")});

    auto selected = jar.cookiesForUrl(urlOf("alpha.test"));
    ASSERT_EQ(selected.size(), 1U);
    EXPECT_EQ(selected[0].value, "2");
    EXPECT_EQ(selected[0].url.toString(), "http://alpha.test:8080/b");
    selected[0].value = "changed";
    EXPECT_THAT(textsOf(jar.cookiesForUrl(urlOf(""))), ElementsAre("alpha.test sid=2"));

    EXPECT_TRUE(jar.deleteCookie({"sid", "other", Url("ftp://alpha.test/")}));
    EXPECT_FALSE(jar.deleteCookie({"sid", "other", Url("ftp://alpha.test/")}));
}

TEST(CookieJarTest, AgreesWithAMapThatIsSearchedWhole) {
    std::vector<std::string> const hosts = {"", "a", "a.b", "a.bc", "b", "A", "\xc3"};
    std::vector<std::string> const names = {"", "a", ".b", "b", "bc", "\xc3\xa4"};
    std::mt19937 random(7);
    auto const pick = [&random](auto const& list) { return list[random() % list.size()]; };
    CookieJar jar;
    std::map<std::string, Cookie> model;
    for (int i = 0; i < 20'000; ++i) {
        auto cookie = cookieOf(pick(names), std::to_string(i), pick(hosts));
        auto const id = cookie.url.host() + cookie.name;
        switch (random() % 4) {
            case 0:
                EXPECT_EQ(jar.deleteCookie(cookie), model.erase(id) > 0);
                break;
            case 1:
                jar.insertCookie(cookie);
                model[id] = cookie;
                break;
            case 2:
                model[id] = cookie;
                jar.insertCookie(std::move(cookie));
                break;
            default: {
                auto const host = pick(hosts);
                std::vector<Cookie> expected;
                for (auto const& [key, stored] : model) {
                    if (key.substr(0, host.size()) == host) {
                        expected.push_back(stored);
                    }
                }
                ASSERT_EQ(textsOf(jar.cookiesForUrl(urlOf(host))), textsOf(expected));
            }
        }
    }
}

TEST(CookieJarTest, ServesSeveralThreads) {
    CookieJar jar;
    std::vector<std::thread> threads(8);
    for (auto& thread : threads) {
        auto const host = "host" + std::to_string(&thread - threads.data());
        thread = std::thread([&jar, host] {
            for (int i = 0; i < 500; ++i) {
                jar.insertCookie(cookieOf("own", "v", host));
                jar.insertCookie(cookieOf("shared", host, "host"));
                EXPECT_EQ(jar.cookiesForUrl(urlOf(host)).size(), 1U);
                EXPECT_TRUE(jar.deleteCookie(cookieOf("own", "", host)));
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(jar.cookiesForUrl(urlOf("")).size(), 1U);
}

}  // namespace
}  // namespace Ostrel::Networking
