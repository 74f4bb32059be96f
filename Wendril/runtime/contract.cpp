#include "Wendril/runtime/contract.hpp"

#include <cstdio>
#include <cstdlib>

namespace Wendril {

void contractBroken(std::string_view message) {
    std::fprintf(stderr, "Wendril: %.*s\n", static_cast<int>(message.size()), message.data());
    std::abort();
}

}  // namespace Wendril
