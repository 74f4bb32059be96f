#include "cli/commandline.hpp"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

namespace Cli {

struct CommandLine::Words {
    const char* help;
    const char* version;
    const char* usage;
    const char* options;
    const char* optionsInUsage;
    const char* arguments;
    const char* command;
    const char* commands;

    // Parts of error messages.
    const char* unknown;
    const char* missing;
    const char* missingCommand;
    const char* needsValue;
    const char* excludes;
    const char* needs;
    const char* badValue;
    const char* takes;
    const char* to;
    const char* butNot;
    const char* seeHelp;
};

const CommandLine::Words CommandLine::english{
    .help = "print this help and end",
    .version = "print the version and end",
    .usage = "Usage",
    .options = "Options",
    .optionsInUsage = "OPTIONS",
    .arguments = "Arguments",
    .command = "COMMAND",
    .commands = "Commands",
    .unknown = "unknown argument: ",
    .missing = "missing argument: ",
    .missingCommand = "missing command",
    .needsValue = " needs a value",
    .excludes = " cannot be combined with ",
    .needs = " needs ",
    .badValue = " does not take this value",
    .takes = "takes ",
    .to = " to ",
    .butNot = ", not ",
    .seeHelp = "; see --help",
};

const CommandLine::Words CommandLine::portuguese{
    .help = "mostra esta ajuda e termina",
    .version = "mostra a versão e termina",
    .usage = "Uso",
    .options = "Opções",
    .optionsInUsage = "OPÇÕES",
    .arguments = "Argumentos",
    .command = "COMANDO",
    .commands = "Comandos",
    .unknown = "argumento desconhecido: ",
    .missing = "falta o argumento ",
    .missingCommand = "falta o comando",
    .needsValue = " precisa de um valor",
    .excludes = " não se combina com ",
    .needs = " precisa de ",
    .badValue = " não aceita esse valor",
    .takes = "aceita de ",
    .to = " a ",
    .butNot = ", não ",
    .seeHelp = "; veja --help",
};

namespace {

// CLI11 pads columns by bytes; a UTF-8 continuation byte takes no column.
std::size_t continuationBytes(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::count_if(text, [](char c) { return (c & 0xC0) == 0x80; }));
}

class HelpFormatter final : public CLI::Formatter {
public:
    std::string make_option(const CLI::Option* option, bool positional) const override {
        const std::string name = make_option_name(option, positional) + make_option_opts(option);
        std::ostringstream row;
        CLI::detail::format_help(row, name, make_option_desc(option),
                                 get_column_width() + continuationBytes(name));
        return row.str();
    }

    std::string make_group(std::string title, bool positional,
                           std::vector<const CLI::Option*> options) const override {
        return Formatter::make_group(get_label(title), positional, std::move(options));
    }

    // The usage line shows what is required, the description tells the default.
    std::string make_option_opts(const CLI::Option* option) const override {
        const std::string value = option->get_type_name();
        return value.empty() ? value : " " + value;
    }
};

std::string firstWord(const std::string& text) { return text.substr(0, text.find_first_of(": ")); }

std::string lastWord(const std::string& text) { return text.substr(text.rfind(' ') + 1); }

void print(std::string text) {
    while (text.ends_with('\n'))
        text.pop_back();
    std::puts(text.c_str());
}

}  // namespace

CommandLine::CommandLine(std::string programName, const std::string& description, Language language)
    : app(description, programName)
    , program(std::move(programName))
    , words(language == Language::english ? english : portuguese) {
    const auto formatter = std::make_shared<HelpFormatter>();
    formatter->label("Usage", words.usage);
    formatter->label("OPTIONS", words.optionsInUsage);
    formatter->label("Options", words.options);
    formatter->label("Positionals", words.arguments);
    formatter->label("SUBCOMMAND", words.command);
    formatter->column_width(28);
    app.formatter(formatter);
    app.group(words.commands);
    app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    app.set_help_flag("-h,--help", words.help);
    app.set_version_flag("--version", program + " " CORVANE_VERSION, words.version);
}

std::optional<int> CommandLine::parse(int argc, char** argv) {
    try {
        app.parse(argc, argv);
        return std::nullopt;
    } catch (const CLI::CallForHelp&) {
        print(app.help());
        return 0;
    } catch (const CLI::CallForVersion& version) {
        print(version.what());
        return 0;
    } catch (const CLI::ParseError& error) {
        complain(explain(error) + words.seeHelp);
        return wrongUsage;
    }
}

// CLI11 tells the kind of an error by a type name and the options by the first and last word of its
// English text.
std::string CommandLine::explain(const CLI::ParseError& error) const {
    if (const auto unknown = app.remaining(true); !unknown.empty()) return words.unknown + unknown.front();
    const std::string kind = error.get_name();
    const std::string text = error.what();
    if (kind == "RequiredError")
        return text.starts_with("A subcommand") ? words.missingCommand : words.missing + firstWord(text);
    if (kind == "ArgumentMismatch") return firstWord(text) + words.needsValue;
    if (kind == "ExcludesError") return firstWord(text) + words.excludes + lastWord(text);
    if (kind == "RequiresError") return firstWord(text) + words.needs + lastWord(text);
    if (kind == "ValidationError") return firstWord(text) + text.substr(text.find(": ") + 1);
    // "Could not convert: --json = x", from a flag that was given a value.
    return firstWord(text.substr(text.find(": ") + 2)) + words.badValue;
}

void CommandLine::complain(std::string text) const {
    std::ranges::replace(text, '\n', ' ');
    std::fprintf(stderr, "%s: %s\n", program.c_str(), text.c_str());
}

std::string CommandLine::rangeText(const std::string& lowest, const std::string& highest) const {
    return words.takes + lowest + words.to + highest + words.butNot;
}

}  // namespace Cli
