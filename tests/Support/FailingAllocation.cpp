#include "tests/Support/FailingAllocation.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

constexpr int NEVER = -1;
thread_local int SUCCESSES_LEFT = NEVER;

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

namespace Ostrel::Networking::Testing {

FailingAllocation::FailingAllocation(int successes) { SUCCESSES_LEFT = successes; }
FailingAllocation::~FailingAllocation() { SUCCESSES_LEFT = NEVER; }

}  // namespace Ostrel::Networking::Testing
