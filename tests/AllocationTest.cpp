// A program of its own: the replaced functions hide from ThreadSanitizer which library allocates.

#include <cstddef>
#include <cstdlib>
#include <new>
#include <string>

#include <gtest/gtest.h>

#include "Networking/CookieJar/CookieJar.h"
#include "Networking/NativeProxyProvider/NativeProxyProvider.h"

namespace {

constexpr int NEVER = -1;
/// How many allocations succeed before one fails.
int SUCCESSES_LEFT = NEVER;

}  // namespace

void* operator new(std::size_t size) {
    auto const fails = SUCCESSES_LEFT == 0;
    if (SUCCESSES_LEFT != NEVER) {
        --SUCCESSES_LEFT;
    }
    auto* const memory = fails ? nullptr : std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace Ostrel::Networking {

/// Returns false if the allocation after `successes` others made `action` throw `std::bad_alloc`.
template <typename Action>
bool succeeds(int successes, Action action) {
    SUCCESSES_LEFT = successes;
    try {
        action();
    } catch (std::bad_alloc const&) {
        return false;
    }
    SUCCESSES_LEFT = NEVER;
    return true;
}

TEST(AllocationTest, FailureLeavesAWholeCookieInTheJar) {
    auto const cookieOf = [](char letter) {
        std::string const text(100, letter);  // Too long to be stored without an allocation.
        Cookie cookie{"id", text, Url("http://host/")};
        cookie.url.setPath(text);
        return cookie;
    };
    auto failures = 0;
    auto isStored = false;
    while (!isStored) {
        CookieJar jar;
        jar.insertCookie(cookieOf('o'));
        auto const newCookie = cookieOf('n');
        isStored = succeeds(failures, [&] { jar.insertCookie(newCookie); });
        failures += isStored ? 0 : 1;
        auto const stored = jar.cookiesForUrl(newCookie.url);
        ASSERT_EQ(stored.size(), 1U);
        auto const expected = cookieOf(isStored ? 'n' : 'o');
        EXPECT_EQ(stored[0].value, expected.value);
        EXPECT_EQ(stored[0].url.path(), expected.url.path());
    }
    EXPECT_GT(failures, 1);
}

TEST(AllocationTest, FailureWhileAUrlIsReadIsNotOneOfTheSettings) {
    NativeProxyProvider const provider;
    auto const url = "http://host/" + std::string(100, 'x');
    EXPECT_FALSE(succeeds(0, [&] { (void)provider.getProxy(url); }));
}

}  // namespace Ostrel::Networking
