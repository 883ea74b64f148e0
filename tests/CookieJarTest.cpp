#include "Networking/CookieJar/CookieJar.h"

#include <map>
#include <random>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace Ostrel::Networking {
namespace {

static_assert(!std::is_copy_constructible_v<CookieJar> && !std::is_move_constructible_v<CookieJar>);

Url urlOf(std::string const& host, std::string const& port = {}) {
    Url url;
    url.setHost(host);
    url.setPort(port);
    return url;
}

std::vector<std::string> textsOf(std::vector<Cookie> const& cookies) {
    std::vector<std::string> texts;
    for (auto const& [name, value, url] : cookies) {
        texts.push_back(url.host() + ":" + url.port() + " " + name + "=" + value);
    }
    return texts;
}

TEST(CookieJarTest, AgreesWithAMapThatIsSearchedWhole) {
    std::vector<std::string> const hosts = {"", "a", "a.b", "a.bc", "b", "A", "\xff"};
    std::vector<std::string> const names = {"", "a", ".b", "b", "bc", "\xff", "\xff\xff"};
    std::mt19937 random(7);
    auto const pick = [&random](auto const& list) { return list[random() % list.size()]; };
    CookieJar jar;
    std::map<std::string, Cookie> model;  // The id is the host and the name.
    for (int i = 0; i < 20'000; ++i) {
        auto const host = pick(hosts);
        Cookie cookie{pick(names), std::to_string(i), urlOf(host, std::to_string(random() % 3))};
        auto const id = host + cookie.name;
        switch (random() % 5) {
            case 0:
            case 1:
                EXPECT_EQ(jar.deleteCookie(cookie), model.erase(id) > 0);
                break;
            case 2:
                jar.insertCookie(cookie);
                model[id] = cookie;
                break;
            case 3:
                model[id] = cookie;
                jar.insertCookie(std::move(cookie));
                break;
            default: {
                std::vector<Cookie> expected;
                for (auto const& [key, stored] : model) {
                    if (key.substr(0, host.size()) == host) {
                        expected.push_back(stored);
                    }
                }
                ASSERT_EQ(textsOf(jar.cookiesForUrl(cookie.url)), textsOf(expected));
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
                jar.insertCookie({"own", "v", urlOf(host)});
                jar.insertCookie({"shared", host, urlOf("host")});
                EXPECT_EQ(jar.cookiesForUrl(urlOf(host)).size(), 1U);
                EXPECT_TRUE(jar.deleteCookie({"own", "", urlOf(host)}));
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
