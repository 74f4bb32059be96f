#include "cli/commandline.hpp"

#include "cli/nearest.hpp"

#include <algorithm>
#include <cstdio>
#include <iterator>
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
    const char* sharedOptions;
    const char* optionsInUsage;
    const char* arguments;
    const char* command;
    const char* commands;

    // Parts of error messages.
    const char* unknown;
    const char* unknownCommand;
    const char* perhaps;
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
    .sharedOptions = "Options of all commands",
    .optionsInUsage = "OPTIONS",
    .arguments = "Arguments",
    .command = "COMMAND",
    .commands = "Commands",
    .unknown = "unknown argument: ",
    .unknownCommand = "unknown command: ",
    .perhaps = "; did you mean ",
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
    .sharedOptions = "Opções de todos os comandos",
    .optionsInUsage = "OPÇÕES",
    .arguments = "Argumentos",
    .command = "COMANDO",
    .commands = "Comandos",
    .unknown = "argumento desconhecido: ",
    .unknownCommand = "comando desconhecido: ",
    .perhaps = "; seria ",
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

    // A command may come after an argument of its parent: "preset CAIXAS save N NOME".
    std::string make_usage(const CLI::App* app, std::string) const override {
        std::string usage = get_label("Usage") + ":";
        for (const CLI::App* level : pathTo(app)) {
            usage += " " + level->get_name();
            if (level == app) usage += " [" + get_label("OPTIONS") + "]";
            for (const CLI::Option* argument : level->get_options(isArgument)) {
                std::string name = argument->get_name(true);
                if (argument->get_items_expected_max() > 1) name += "...";
                usage += argument->get_required() ? " " + name : " [" + name + "]";
            }
        }
        if (app->get_require_subcommand_min() > 0) usage += " " + get_label("SUBCOMMAND");
        return usage + "\n";
    }

    std::string make_positionals(const CLI::App* app) const override {
        std::vector<const CLI::Option*> all;
        for (const CLI::App* level : pathTo(app))
            std::ranges::copy(level->get_options(isArgument), std::back_inserter(all));
        return all.empty() ? "" : Formatter::make_group(get_label("Positionals"), true, all);
    }

    // A command also takes the options of the program.
    std::string make_footer(const CLI::App* app) const override {
        std::string footer = Formatter::make_footer(app);
        const CLI::App* const program = pathTo(app).front();
        if (program == app) return footer;
        const auto shared = program->get_options([program](const CLI::Option* option) {
            return option->nonpositional() && option != program->get_help_ptr() &&
                   option != program->get_version_ptr();
        });
        return Formatter::make_group(get_label("Shared"), false, shared).substr(1) + "\n" + footer;
    }

    // The usage line shows what is required, the description tells the default.
    std::string make_option_opts(const CLI::Option* option) const override {
        const std::string value = option->get_type_name();
        return value.empty() ? value : " " + value;
    }

private:
    static bool isArgument(const CLI::Option* option) { return option->get_positional(); }

    // The program, and the commands down to that one.
    static std::vector<const CLI::App*> pathTo(const CLI::App* app) {
        std::vector<const CLI::App*> path;
        for (const CLI::App* level = app; level; level = level->get_parent())
            path.insert(path.begin(), level);
        return path;
    }
};

// Whether a command on the way to the selected one was asked for help.
bool wantsHelp(const CLI::App& app) {
    const auto selected = app.get_subcommands();
    return app.get_help_ptr()->count() > 0 || (!selected.empty() && wantsHelp(*selected.front()));
}

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
    formatter->label("Shared", words.sharedOptions);
    formatter->label("Positionals", words.arguments);
    formatter->label("SUBCOMMAND", words.command);
    formatter->column_width(28);
    app.formatter(formatter);
    app.group(words.commands);
    app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    app.set_help_flag("-h,--help", words.help);
    app.set_version_flag("--version", program + " " CORVANE_VERSION, words.version);
}

bool CommandLine::read(std::vector<std::string> arguments) {
    std::ranges::reverse(arguments);  // the order in which CLI11 takes a list
    try {
        app.parse(std::move(arguments));
        return true;
    } catch (const CLI::CallForVersion& version) {
        print(version.what());
        return false;
    } catch (const CLI::ParseError& error) {
        // CLI11 throws the first wrong value although help was asked for, too.
        if (!wantsHelp(app)) throw std::invalid_argument(explain(error) + words.seeHelp);
    } catch (const std::invalid_argument&) {
        if (!wantsHelp(app)) throw;
    }
    print(app.help());
    return false;
}

std::optional<int> CommandLine::parse(int argc, char** argv) {
    try {
        if (read({argv + 1, argv + argc})) return std::nullopt;
        return 0;
    } catch (const std::invalid_argument& error) {
        complain(error.what());
        return wrongUsage;
    }
}

std::string CommandLine::explainUnknown(const std::string& argument) const {
    const CLI::App* level = &app;
    std::vector<std::string> options;
    for (bool deeper = true; deeper;) {
        for (const CLI::Option* option : level->get_options())
            if (!option->get_lnames().empty()) options.push_back("--" + option->get_lnames().front());
        const auto selected = level->get_subcommands();
        deeper = !selected.empty();
        if (deeper) level = selected.front();
    }
    std::vector<std::string> commands;
    for (const CLI::App* command : level->get_subcommands({}))
        commands.push_back(command->get_name());
    const bool isOption = argument.starts_with('-');
    const bool isCommand = !isOption && !commands.empty();
    std::string text = (isCommand ? words.unknownCommand : words.unknown) + argument;
    if (const auto name = nearest(argument, isOption ? options : commands))
        text += words.perhaps + *name + "?";
    return text;
}

// CLI11 tells the kind of an error by a type name and the options by the first and last word of its
// English text.
std::string CommandLine::explain(const CLI::ParseError& error) const {
    if (const auto unknown = app.remaining(true); !unknown.empty()) return explainUnknown(unknown.front());
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
