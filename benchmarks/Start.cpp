// Prints when `main` was entered, on the steady clock, in nanoseconds.

#include <chrono>
#include <cstdio>

int main() {
    auto const now = std::chrono::steady_clock::now().time_since_epoch();
    std::printf("%lld", static_cast<long long>(std::chrono::nanoseconds(now).count()));
}
