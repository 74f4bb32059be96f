#pragma once

#include "Wendril/client.hpp"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Cli {

/// One speaker of a show: who it is, its 92 settings, and the names of the presets it holds.
struct ShowSpeaker {
    Wendril::DeviceInfo info;
    Wendril::ModuleValues settings;
    std::map<std::uint32_t, std::string> presets;

    bool operator==(const ShowSpeaker&) const = default;
};

/// All that a show file holds (docs/show-file.md).
struct Show {
    static constexpr int version = 1;

    std::vector<ShowSpeaker> speakers;

    /// The file's text.
    std::string text() const;

    /// From the file's text. Throws std::runtime_error with what is wrong and where: no JSON, another
    /// version, a missing, unknown or repeated part, a value of the wrong type. Whether values are within
    /// their limits is not looked at: a board may hold others.
    static Show parse(std::string_view text);

    /// The file of that path, or standard input for "-".
    static Show read(const std::string& path);

    bool operator==(const Show&) const = default;
};

/// Throws std::runtime_error for the first value outside the limits of its module.
void checkLimits(const Show& show);

}  // namespace Cli
