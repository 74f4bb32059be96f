#pragma once

#include "cli/commandline.hpp"

#include <cstddef>
#include <optional>
#include <string>

namespace Corvane {

/// What the program is for, in one sentence.
constexpr const char* purpose = "Encontra, ajusta e acompanha uma cadeia de caixas acústicas.";

/// What the command line and the environment ask of the program.
struct Options {
    std::optional<std::size_t> demoSpeakers;
    double zoom = 1;        // of the whole window
    std::string extraPort;  // CORVANE_PORT: offered as the first port; empty if not set
    std::string port;       // chosen at the start, and offered as the first port; empty: none
    std::string bridge;     // chosen at the start; empty: none
};

/// Adds the options of `corvane`. Parsing fills `options`, which must outlive it.
void addOptions(Cli::CommandLine& commandLine, Options& options);

}  // namespace Corvane
