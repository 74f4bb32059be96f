#pragma once

#include <QStringList>

#include <cstddef>
#include <optional>
#include <string>

namespace Corvane {

/// What the command line and the environment ask of the program.
struct Options {
    std::optional<std::size_t> demoSpeakers;
    std::string extraPort;  // CORVANE_PORT: offered first; none if empty

    /// The text to print instead of starting, and how the process ends then.
    struct Answer {
        QString text;
        int status;
    };
    std::optional<Answer> answer;
};

/// `arguments` with the program's name first.
Options parseOptions(const QStringList& arguments);

}  // namespace Corvane
