#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace Describe {

/// One option or argument, as the program itself declares it.
struct Option {
    enum class Takes { nothing, serialPort, file, value };

    std::vector<std::string> names;  // "-h", "--help"; of an argument its name alone
    std::string value;               // "PORTA", "[N]"; empty if it takes none
    std::string help;
    Takes takes = Takes::nothing;
};

/// A program, or one of its commands.
struct Command {
    std::string name;
    std::string path;   // "/preset/save"; of the program empty
    std::string usage;  // "corvane-cli preset CAIXAS save [OPÇÕES] N NOME"
    std::string help;
    std::string footer;
    std::vector<Option> options;
    std::vector<Option> arguments;
    std::vector<Command> commands;
};

Command commandOf(const CLI::App& app);

/// The command and all below it, each before its own commands.
std::vector<const Command*> allOf(const Command& command);

/// The text with every `from` replaced.
std::string replaced(std::string text, const std::string& from, const std::string& to);

}  // namespace Describe
