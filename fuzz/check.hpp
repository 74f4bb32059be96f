#pragma once

#include <cstdlib>

namespace Fuzz {

/// Also in builds without assertions.
inline void check(bool promise) {
    if (!promise) std::abort();
}

}  // namespace Fuzz
