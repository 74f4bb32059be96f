#pragma once

#include "cli/session.hpp"

#include "Wendril/client.hpp"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace Cli {

/// The presets that a board holds, with their names.
struct PresetDirectory {
    Wendril::K7QClient::PresetInfo info;
    std::map<std::uint32_t, std::string> names;

    std::optional<std::string> nameOf(std::uint32_t number) const;
};

/// Each request is made up to `attempts` times. A name that the board does not tell becomes "Preset N".
PresetDirectory readPresets(Session& session, std::uint8_t address, int attempts = 1);

}  // namespace Cli
