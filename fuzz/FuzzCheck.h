#pragma once

#include <cstdlib>

namespace voltaro::fuzz {

// A broken promise of the code under test: abort, so that libFuzzer keeps the input.
inline void check(bool condition) {
    if (!condition) {
        std::abort();
    }
}

}  // namespace voltaro::fuzz
