#pragma once

#include <cstdio>
#include <cstdlib>

/// Aborts, which is a finding, if a property does not hold.
inline void require(bool holds, char const* property) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", property);
        std::abort();
    }
}
