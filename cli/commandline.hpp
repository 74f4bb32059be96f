#pragma once

#include "cli/numbers.hpp"

#include <CLI/CLI.hpp>

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace Cli {

/// The language of a program's help and of its error messages.
enum class Language { english, portuguese };

/// The command line of one program: `--help`, `--version`, and one style of help and errors.
/// An option that is given twice takes the last value.
class CommandLine {
public:
    CommandLine(std::string program, const std::string& description, Language language);

    /// The one of the two that is in the program's language.
    const char* inLanguage(const char* inEnglish, const char* inPortuguese) const {
        return &words == &english ? inEnglish : inPortuguese;
    }

    /// Takes the options and commands of the program.
    CLI::App app;

    /// Reads the arguments after the program's name. Prints help or the version and returns false when
    /// they ask for it. Throws std::invalid_argument for a mistake.
    bool read(std::vector<std::string> arguments);

    /// Reads the command line. When that ends the program (help, version or a mistake), prints the
    /// answer and returns the exit status: 0, or `wrongUsage`.
    std::optional<int> parse(int argc, char** argv);

    /// Accepts a number between the two, both included, in decimal notation.
    template <class Number>
    CLI::Validator number(Number lowest, Number highest) const {
        const std::string refusal = rangeText(numberText(lowest), numberText(highest));
        return {[=](std::string& text) {
                    const auto value = parseNumber(text, lowest, highest);
                    if (!value) return refusal + "\"" + text + "\"";
                    // CLI11 would read "010" as octal.
                    text = numberText(*value);
                    return std::string();
                },
                ""};
    }

    /// Prints an error as one line on standard error, after the program's name.
    void complain(std::string text) const;

    static constexpr int wrongUsage = 2;

private:
    struct Words;
    static const Words english;
    static const Words portuguese;

    // "takes 1 to 254, not ".
    std::string rangeText(const std::string& lowest, const std::string& highest) const;
    std::string explain(const CLI::ParseError& error) const;
    std::string explainUnknown(const std::string& argument) const;

    const std::string program;
    const Words& words;
};

}  // namespace Cli
