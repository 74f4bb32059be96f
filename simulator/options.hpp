#pragma once

#include "simulator/line.hpp"

#include "Wendril/runtime/executor.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Simulator {

/// What the command line of `corvane-sim` asks for.
struct ProgramOptions {
    struct Mute {
        std::size_t board;  // from 1
        Wendril::Duration after;
    };

    LineOptions line;
    std::string ptyLink;  // empty: the pseudo-terminal's own path
    std::optional<std::uint16_t> tcpPort;
    std::string listenAddress = "127.0.0.1";
    std::vector<Mute> mutes;
    std::optional<Wendril::Duration> hangUp;
    bool log = false;
    bool help = false;
};

extern const char* const usage;

/// Throws std::invalid_argument that says which option is wrong and what is allowed.
ProgramOptions parseOptions(int argc, char** argv);

}  // namespace Simulator
