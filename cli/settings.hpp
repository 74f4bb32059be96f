#pragma once

#include "cli/session.hpp"

#include "Wendril/client.hpp"

#include <cstdint>
#include <vector>

namespace Cli {

/// Reads these modules of a speaker, one request each. Throws the first error.
Wendril::Task<Wendril::ModuleValues> readEach(Wendril::K7QClient client, std::uint8_t address,
                                              std::vector<Wendril::ModuleRef> modules);

/// Reads all 92 settable modules, with progress on a terminal.
Wendril::ModuleValues readAllModules(Session& session, std::uint8_t address);

}  // namespace Cli
