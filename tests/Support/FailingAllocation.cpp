#include "tests/Support/FailingAllocation.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

constexpr int NEVER = -1;
thread_local int successesLeft = NEVER;

}  // namespace

void* operator new(std::size_t size) {
    auto const fails = successesLeft == 0;
    if (successesLeft != NEVER) {
        --successesLeft;
    }
    auto* const memory = fails ? nullptr : std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace Ostrel::Networking::Testing {

FailingAllocation::FailingAllocation(int successes) { successesLeft = successes; }
FailingAllocation::~FailingAllocation() { successesLeft = NEVER; }

}  // namespace Ostrel::Networking::Testing
