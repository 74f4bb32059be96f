#pragma once

#include "simulator/line.hpp"

#include "cli/commandline.hpp"

#include "Wendril/runtime/executor.hpp"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Simulator {

/// What the program is for, in one sentence.
std::string purpose(Cli::Language language);

/// What the command line of `corvane-sim` asks for.
struct ProgramOptions {
    struct Mute {
        std::size_t board;  // from 1
        Wendril::Duration after;
    };

    // On a loaded machine this process sees a request late.
    LineOptions line{.look = std::chrono::milliseconds(10), .wakeAhead = std::chrono::microseconds(80)};
    std::string ptyLink;  // empty: the pseudo-terminal's own path
    std::optional<std::uint16_t> tcpPort;
    std::string listenAddress = "127.0.0.1";
    std::vector<Mute> mutes;
    std::optional<Wendril::Duration> hangUp;
    bool log = false;
    std::string load;  // show file whose speakers are the chain
    std::string dump;  // show file that is written at the end
};

/// Adds the options of `corvane-sim`. Parsing fills `options`, which must outlive it.
/// The program speaks English; its manual page is in Portuguese, too.
void addOptions(Cli::CommandLine& commandLine, ProgramOptions& options);

}  // namespace Simulator
