#pragma once

#include "Wendril/client.hpp"

#include <cstdint>
#include <vector>

namespace Cli {

/// Reads these modules of a speaker, one request each. Throws the first error.
Wendril::Task<Wendril::ModuleValues> readEach(Wendril::K7QClient client, std::uint8_t address,
                                              std::vector<Wendril::ModuleRef> modules);

}  // namespace Cli
