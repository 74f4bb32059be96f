#include "packaging/describe/completions.hpp"

namespace Describe {

namespace {

constexpr const char* serialPorts = "/dev/ttyUSB* /dev/ttyACM* /dev/serial/by-id/*";

std::string functionName(const Command& program) { return "_" + replaced(program.name, "-", "_"); }

// Of all commands, to walk along the words that have been typed: "/preset | /preset/save".
std::string paths(const Command& program, const char* between) {
    std::string list;
    for (const Command* const command : allOf(program))
        if (!command->path.empty()) list += (list.empty() ? "" : between) + command->path;
    return list;
}

// The names of all options whose values are of that kind.
std::vector<std::string> namesTaking(const Command& program, Option::Takes takes) {
    std::vector<std::string> names;
    for (const Command* const command : allOf(program))
        for (const Option& option : command->options)
            if (option.takes == takes) names.insert(names.end(), option.names.begin(), option.names.end());
    return names;
}

std::string joined(const std::vector<std::string>& texts, const char* between) {
    std::string all;
    for (const std::string& text : texts)
        all += (all.empty() ? "" : between) + text;
    return all;
}

// What may be typed after this command; the options of the program may stand anywhere.
std::vector<Option> optionsAt(const Command& program, const Command& command) {
    std::vector<Option> options = command.options;
    if (&command != &program)
        for (const Option& option : program.options)
            if (option.value.empty() || option.names.back().starts_with("--"))
                if (option.names.back() != "--help" && option.names.back() != "--version")
                    options.push_back(option);
    return options;
}

// Inside single quotes of bash and zsh.
std::string shellQuoted(const std::string& text) { return "'" + replaced(text, "'", "'\\''") + "'"; }

std::string fishQuoted(const std::string& text) {
    return "'" + replaced(replaced(text, "\\", "\\\\"), "'", "\\'") + "'";
}

std::string caseLine(const std::vector<std::string>& names, const std::string& act) {
    return names.empty() ? "" : "        " + joined(names, " | ") + ") " + act + " ;;\n";
}

std::string bashWords(const Command& program, const Command& command) {
    std::vector<std::string> words;
    for (const Command& each : command.commands)
        words.push_back(each.name);
    for (const Option& option : optionsAt(program, command))
        words.insert(words.end(), option.names.begin(), option.names.end());
    return joined(words, " ");
}

std::string zshItems(const std::vector<std::pair<std::string, std::string>>& items) {
    std::string list;
    for (const auto& [name, help] : items)
        list += " " + shellQuoted(replaced(name, ":", "\\:") + ":" + help);
    return "(" + list + " )";
}

}  // namespace

std::string bashCompletion(const Command& program) {
    const std::string walk = paths(program, " | ");
    std::string text = "# bash completion of " + program.name + "\n" + functionName(program) + "() {\n";
    text +=
        "    local cur=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} at='' words='' i\n";
    text += "    COMPREPLY=()\n";
    if (!walk.empty())
        text += "    for ((i = 1; i < COMP_CWORD; i++)); do\n"
                "        case $at/${COMP_WORDS[i]} in\n            " +
                walk + ") at+=/${COMP_WORDS[i]} ;;\n        esac\n    done\n";
    text += "    case $previous in\n";
    text += caseLine(namesTaking(program, Option::Takes::serialPort),
                     std::string("mapfile -t COMPREPLY < <(compgen -W \"$(compgen -G '") +
                         replaced(serialPorts, " ", "'; compgen -G '") + "')\" -- \"$cur\"); return");
    text += caseLine(namesTaking(program, Option::Takes::file),
                     "mapfile -t COMPREPLY < <(compgen -f -- \"$cur\"); return");
    text += caseLine(namesTaking(program, Option::Takes::value), "return");
    text += "    esac\n    case $at in\n";
    for (const Command* const command : allOf(program))
        text +=
            "        '" + command->path + "') words=" + shellQuoted(bashWords(program, *command)) + " ;;\n";
    text += "    esac\n"
            "    mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$cur\")\n}\n";
    return text + "complete -o default -F " + functionName(program) + " " + program.name + "\n";
}

std::string zshCompletion(const Command& program) {
    const std::string walk = paths(program, " | ");
    std::string text = "#compdef " + program.name + "\n";
    text += "local at='' word\nlocal -a names options\n";
    if (!walk.empty())
        text += "for word in ${words[2,CURRENT-1]}; do\n"
                "    case $at/$word in\n        (" +
                walk + ") at+=/$word ;;\n    esac\ndone\n";
    text += "case ${words[CURRENT-1]} in\n";
    const auto line = [&program](Option::Takes takes, const std::string& act) {
        const auto names = namesTaking(program, takes);
        return names.empty() ? "" : "    (" + joined(names, " | ") + ") " + act + "; return ;;\n";
    };
    text += line(Option::Takes::serialPort, std::string("compadd -- ") + replaced(serialPorts, "*", "*(N)"));
    text += line(Option::Takes::file, "_files");
    text += line(Option::Takes::value, "_message valor");
    text += "esac\ncase $at in\n";
    for (const Command* const command : allOf(program)) {
        std::vector<std::pair<std::string, std::string>> names, options;
        for (const Command& each : command->commands)
            names.emplace_back(each.name, each.help);
        for (const Option& option : optionsAt(program, *command))
            for (const std::string& name : option.names)
                options.emplace_back(name, option.help);
        text += "    ('" + command->path + "')\n        names=" + zshItems(names) +
                "\n        options=" + zshItems(options) + "\n        ;;\n";
    }
    return text + "esac\n"
                  "_describe -t commands comando names\n"
                  "if [[ $PREFIX == -* ]]; then _describe -o opção options; else _files; fi\n";
}

std::string fishCompletion(const Command& program) {
    const std::string at = "_" + functionName(program) + "_at";
    std::string text = "# fish completion of " + program.name + "\nfunction " + at +
                       "\n    set -l at ''\n    for word in (commandline -opc)[2..-1]\n"
                       "        switch \"$at/$word\"\n            case " +
                       (program.commands.empty() ? "''" : paths(program, " ")) +
                       "\n                set at \"$at/$word\"\n        end\n    end\n"
                       "    test \"$at\" = \"$argv[1]\"\nend\n";
    for (const Command* const command : allOf(program)) {
        const std::string start =
            "complete -c " + program.name + " -n " + fishQuoted(at + " '" + command->path + "'");
        for (const Command& each : command->commands)
            text += start + " -f -a " + each.name + " -d " + fishQuoted(each.help) + "\n";
        for (const Option& option : optionsAt(program, *command)) {
            text += start;
            for (const std::string& name : option.names)
                text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
            if (option.takes == Option::Takes::file) text += " -r -F";
            if (option.takes == Option::Takes::value) text += " -x";
            if (option.takes == Option::Takes::serialPort)
                text += " -x -a '(for port in " + std::string(serialPorts) + "; echo $port; end)'";
            text += " -d " + fishQuoted(option.help) + "\n";
        }
    }
    return text;
}

}  // namespace Describe
