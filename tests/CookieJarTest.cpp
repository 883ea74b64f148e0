#include "Networking/CookieJar/CookieJar.h"

#include <future>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace Ostrel::Networking {
namespace {

Url urlOf(std::string const& host) {
    Url url;
    url.setHost(host);
    return url;
}

std::string textOf(std::vector<Cookie> const& cookies) {
    std::string text;
    for (auto const& cookie : cookies) {
        text +=
            cookie.url.host() + cookie.url.path() + " " + cookie.name + "=" + cookie.value + ";";
    }
    return text;
}

TEST(CookieJarTest, AgreesWithAMapThatIsSearchedWhole) {
    std::vector<std::string> const hosts = {"", "a", "a.b", "a.bc", "b", "A", "\xff"};
    std::vector<std::string> const names = {"", "a", ".b", "b", "bc", "\xff", "\xff\xff"};
    std::mt19937 random(7);
    auto const pick = [&random](auto const& list) { return list[random() % list.size()]; };
    CookieJar jar;
    std::map<std::string, Cookie> model;  // By host and name, written together.
    for (int i = 0; i < 20'000; ++i) {
        auto const host = pick(hosts);
        Cookie cookie{pick(names), std::to_string(i), urlOf(host)};
        cookie.url.setPath(std::to_string(i));
        auto const action = random() % 5;
        if (action < 2) {
            EXPECT_EQ(jar.deleteCookie(cookie), model.erase(host + cookie.name) > 0);
        } else if (action < 4) {
            action == 2 ? jar.insertCookie(cookie) : jar.insertCookie(Cookie(cookie));
            model[host + cookie.name] = cookie;
        } else {
            std::vector<Cookie> expected;
            for (auto const& [id, stored] : model) {
                if (id.substr(0, host.size()) == host) {
                    expected.push_back(stored);
                }
            }
            ASSERT_EQ(textOf(jar.cookiesForUrl(cookie.url)), textOf(expected));
        }
    }
}

TEST(CookieJarTest, ServesSeveralThreads) {
    CookieJar jar;
    std::vector<std::future<void>> threads;
    for (std::string const host : {"host0", "host1", "host2", "host3"}) {
        threads.push_back(std::async(std::launch::async, [&, host] {
            for (int i = 0; i < 5'000; ++i) {
                jar.insertCookie({"own", "v", urlOf(host)});
                jar.insertCookie({"shared", host, urlOf("host")});
                EXPECT_EQ(jar.cookiesForUrl(urlOf(host)).size(), 1U);
                EXPECT_TRUE(jar.deleteCookie({"own", "", urlOf(host)}));
            }
        }));
    }
    threads.clear();  // Waits for all.
    EXPECT_EQ(jar.cookiesForUrl(urlOf("")).size(), 1U);
}

}  // namespace
}  // namespace Ostrel::Networking
