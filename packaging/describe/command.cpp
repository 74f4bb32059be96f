#include "packaging/describe/command.hpp"

#include <algorithm>
#include <array>
#include <memory>

namespace Describe {

namespace {

// By the names that the programs give to values.
Option::Takes takenBy(const std::string& value) {
    constexpr std::array<const char*, 3> files{"ARQUIVO", "FILE", "PATH"};
    if (value.empty()) return Option::Takes::nothing;
    if (value == "PORTA") return Option::Takes::serialPort;
    return std::ranges::find(files, value) == files.end() ? Option::Takes::value : Option::Takes::file;
}

Option optionOf(const CLI::Option& option) {
    Option made;
    if (option.get_positional()) made.names = {option.get_name(true)};
    for (const std::string& name : option.get_snames())
        made.names.push_back("-" + name);
    for (const std::string& name : option.get_lnames())
        made.names.push_back("--" + name);
    made.value = option.get_type_name();
    made.help = replaced(option.get_description(), "\n", " ");
    made.takes = takenBy(made.value);
    return made;
}

std::string usageOf(const CLI::App& app) {
    const auto formatter = std::dynamic_pointer_cast<CLI::Formatter>(app.get_formatter());
    std::string usage = formatter->make_usage(&app, "");
    usage.erase(usage.find_last_not_of('\n') + 1);
    return usage.substr(usage.find(": ") + 2);
}

Command below(const CLI::App& app, const std::string& path) {
    Command made{app.get_name(), path, usageOf(app), app.get_description(), app.get_footer(), {}, {}, {}};
    for (const CLI::Option* const option : app.get_options())
        (option->get_positional() ? made.arguments : made.options).push_back(optionOf(*option));
    for (const CLI::App* const command : app.get_subcommands({}))
        made.commands.push_back(below(*command, path + "/" + command->get_name()));
    return made;
}

}  // namespace

Command commandOf(const CLI::App& app) { return below(app, ""); }

std::vector<const Command*> allOf(const Command& command) {
    std::vector<const Command*> all{&command};
    for (const Command& each : command.commands)
        std::ranges::copy(allOf(each), std::back_inserter(all));
    return all;
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = text.find(from); at != text.npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

}  // namespace Describe
