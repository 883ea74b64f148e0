#include "Networking/CookieJar/CookieJar.h"

#include <atomic>
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

Url urlOf(std::string const& host) {
    Url url;
    url.setHost(host);
    return url;
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
        switch (random() % 5) {
            case 0:
            case 1:
                EXPECT_EQ(jar.deleteCookie(cookie), model.erase(host + cookie.name) > 0);
                break;
            case 2:
                jar.insertCookie(cookie);
                model[host + cookie.name] = cookie;
                break;
            case 3:
                model[host + cookie.name] = cookie;
                jar.insertCookie(std::move(cookie));
                break;
            default: {
                auto selected = jar.cookiesForUrl(cookie.url);
                auto next = selected.begin();
                for (auto const& [id, stored] : model) {
                    if (id.substr(0, host.size()) == host) {
                        ASSERT_NE(next, selected.end());
                        EXPECT_EQ(next->name + next->value, stored.name + stored.value);
                        EXPECT_EQ(next->url.host() + next->url.path(),
                                  stored.url.host() + stored.url.path());
                        ++next;
                    }
                }
                ASSERT_EQ(next, selected.end());
            }
        }
    }
}

TEST(CookieJarTest, ServesSeveralThreads) {
    CookieJar jar;
    std::atomic<std::size_t> started = 0;
    std::vector<std::thread> threads(4);
    for (auto& thread : threads) {
        thread = std::thread([&, host = "host" + std::to_string(&thread - threads.data())] {
            for (++started; started < threads.size();) {
            }
            for (int i = 0; i < 5'000; ++i) {
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
