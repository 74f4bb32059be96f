#include "packaging/describe/manpage.hpp"

namespace Describe {

const ManWords englishWords{"Corvane Manual", "NAME", "SYNOPSIS", "OPTIONS", "COMMANDS", "NOTES", "SEE ALSO"};
const ManWords portugueseWords{"Manual do Corvane", "NOME",        "SINOPSE",    "OPÇÕES",
                               "COMANDOS",          "OBSERVAÇÕES", "VEJA TAMBÉM"};

namespace {

// A dash is an ASCII hyphen-minus only when escaped, and a line that begins with a point or an
// apostrophe would be a request.
std::string escaped(const std::string& text) {
    std::string made = replaced(replaced(text, "\\", "\\e"), "-", "\\-");
    if (made.starts_with('.') || made.starts_with('\'')) made.insert(0, "\\&");
    return replaced(replaced(made, "\n.", "\n\\&."), "\n'", "\n\\&'");
}

std::string bold(const std::string& text) { return "\\fB" + escaped(text) + "\\fR"; }

std::string entry(const Option& option) {
    std::string names;
    for (const std::string& name : option.names)
        names += (names.empty() ? "" : ", ") + bold(name);
    const std::string value = option.value.empty() ? "" : " \\fI" + escaped(option.value) + "\\fR";
    return ".TP\n" + names + value + "\n" + escaped(option.help) + "\n";
}

std::string entries(const std::vector<Option>& options) {
    std::string text;
    for (const Option& option : options)
        text += entry(option);
    return text;
}

// Every command has --help; the page names it once, with the options of the program.
std::vector<Option> ownOptions(const Command& command) {
    std::vector<Option> own = command.options;
    std::erase_if(own, [](const Option& option) { return option.names.back() == "--help"; });
    return own;
}

// Its lines are laid out already.
std::string footer(const Command& command) {
    return command.footer.empty() ? "" : ".nf\n" + escaped(command.footer) + "\n.fi\n";
}

std::string commandEntries(const Command& program) {
    std::string text;
    for (const Command* const command : allOf(program)) {
        const bool isGroup = !command->commands.empty();
        if (command == &program || isGroup) continue;
        text += ".SS " + escaped(command->usage.substr(program.name.size() + 1)) + "\n";
        text += escaped(command->help) + "\n";
        text += entries(command->arguments) + entries(ownOptions(*command));
        if (command->footer != program.footer) text += ".PP\n" + footer(*command);
    }
    return text;
}

}  // namespace

std::string manPage(const Command& program, const ManWords& words, const std::string& version,
                    const std::string& seeAlso) {
    std::string title;
    for (const char c : program.name)
        title += c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    const auto section = [](const char* name) { return std::string(".SH \"") + name + "\"\n"; };
    std::string page =
        ".TH \"" + escaped(title) + "\" 1 \"\" \"Corvane " + version + "\" \"" + words.manual + "\"\n";
    page += section(words.name) + escaped(program.name) + " \\- " + escaped(program.help) + "\n";
    page += section(words.synopsis) + escaped(program.usage) + "\n";
    page += section(words.options) + entries(program.options);
    if (!program.commands.empty()) page += section(words.commands) + commandEntries(program);
    page += section(words.notes) + footer(program);
    return page + section(words.seeAlso) + seeAlso + "\n";
}

}  // namespace Describe
