#include "cli/commandline.hpp"
#include "cli/commands.hpp"

#include <exception>
#include <functional>
#include <string>
#include <vector>

namespace {

using Cli::CommandLine;

constexpr int failed = 1;
constexpr int interrupted = 130;  // as shells report SIGINT

constexpr const char* moduleHelp = "GAIN/In0, PEQ/Out2/4 ou o número";

struct Arguments {
    Cli::Session session;
    std::string bridge;
    std::string range = "1-16";
    bool confirmed = false;
    std::uint8_t address = 0;
    std::vector<std::string> modules;
    std::string module;
    std::vector<std::string> assignments;
    bool watch = false;
    std::uint32_t number = 0;
    std::string name;
    std::string channel;
    std::function<void()> command;
};

CLI::App* addCommand(CLI::App& parent, Arguments& a, const char* name, const char* help,
                     std::function<void()> run) {
    CLI::App* const command = parent.add_subcommand(name, help);
    command->callback([&a, run = std::move(run)] { a.command = run; });
    command->fallthrough();
    return command;
}

// An argument that stands alone, not after an option's name.
template <class Value>
CLI::Option* addArgument(CLI::App* command, const char* name, Value& value, const char* help) {
    return command->add_option(name, value, help)->type_name("")->required();
}

void addAddress(CLI::App* command, Arguments& a, const CommandLine& commandLine) {
    addArgument(command, "CAIXA", a.address, "endereço da caixa, 1 a 254")
        ->transform(commandLine.number<std::uint8_t>(1, 254));
}

void addPresetCommands(CommandLine& commandLine, Arguments& a) {
    CLI::App* const preset = commandLine.app.add_subcommand("preset", "presets guardados na caixa");
    preset->require_subcommand(1)->fallthrough();
    addAddress(preset, a, commandLine);
    const auto slot = [&](CLI::App* command) {
        addArgument(command, "N", a.number, "número do preset, 0 a 31")
            ->transform(commandLine.number<std::uint32_t>(0, 31));
    };
    addCommand(*preset, a, "list", "lista os presets", [&a] { Cli::listPresets(a.session, a.address); });
    slot(addCommand(*preset, a, "load", "carrega um preset",
                    [&a] { Cli::loadPreset(a.session, a.address, a.number); }));
    CLI::App* const save = addCommand(*preset, a, "save", "salva os ajustes atuais",
                                      [&a] { Cli::savePreset(a.session, a.address, a.number, a.name); });
    slot(save);
    addArgument(save, "NOME", a.name, "nome, até 20 bytes");
    slot(addCommand(*preset, a, "delete", "apaga um preset",
                    [&a] { Cli::deletePreset(a.session, a.address, a.number); }));
}

void addCommands(CommandLine& commandLine, Arguments& a) {
    CLI::App& app = commandLine.app;
    app.require_subcommand(1);
    addCommand(app, a, "ports", "lista as portas seriais", [&a] { Cli::listPorts(a.session); });

    CLI::App* const scan =
        addCommand(app, a, "scan", "procura caixas", [&a] { Cli::scan(a.session, a.range); });
    addArgument(scan, "FAIXA", a.range, "endereços PRIMEIRO-ÚLTIMO (1-16)")->required(false);

    addCommand(app, a, "address", "dá endereços novos às caixas, na ordem da linha", [&a] {
        Cli::assignAddresses(a.session, a.confirmed);
    })->add_flag("--yes", a.confirmed, "não pergunta");

    CLI::App* const info =
        addCommand(app, a, "info", "identifica uma caixa", [&a] { Cli::showInfo(a.session, a.address); });
    addAddress(info, a, commandLine);

    CLI::App* const read = addCommand(app, a, "read", "lê módulos (todos, se nenhum for dito)",
                                      [&a] { Cli::readModules(a.session, a.address, a.modules); });
    addAddress(read, a, commandLine);
    addArgument(read, "MÓDULO", a.modules, moduleHelp)->required(false);

    CLI::App* const write = addCommand(app, a, "write", "ajusta campos de um módulo", [&a] {
        Cli::writeModule(a.session, a.address, a.module, a.assignments);
    });
    addAddress(write, a, commandLine);
    addArgument(write, "MÓDULO", a.module, moduleHelp);
    addArgument(write, "CAMPO=VALOR", a.assignments, "por exemplo db=-6");

    CLI::App* const meters = addCommand(app, a, "meters", "mostra os níveis",
                                        [&a] { Cli::showMeters(a.session, a.address, a.watch); });
    addAddress(meters, a, commandLine);
    meters->add_flag("--watch", a.watch, "até Ctrl-C");

    addPresetCommands(commandLine, a);

    CLI::App* const response = addCommand(app, a, "response", "curva de resposta de um canal",
                                          [&a] { Cli::showResponse(a.session, a.address, a.channel); });
    addAddress(response, a, commandLine);
    addArgument(response, "CANAL", a.channel, "In0, In1, Out0 a Out3");
}

void addOptions(CommandLine& commandLine, Arguments& a) {
    CLI::App& app = commandLine.app;
    CLI::Option* const port =
        app.add_option("--port", a.session.endpoint.port, "porta serial")->type_name("PORTA");
    app.add_option("--bridge", a.bridge, "ponte Wi-Fi")->type_name("HOST[:PORTA]")->excludes(port);
    app.add_flag("--verbose", a.session.verbose, "mostra cada quadro em stderr");
    app.add_flag("--json", a.session.json, "escreve JSON");
}

void run(Arguments& a, bool needsLink) {
    if (!a.bridge.empty()) a.session.endpoint.bridge = Wendril::BridgeAddress::parse(a.bridge);
    if (needsLink && a.bridge.empty() && a.session.endpoint.port.empty())
        throw std::invalid_argument("diga onde estão as caixas: --port PORTA ou --bridge HOST[:PORTA]");
    a.command();
}

}  // namespace

int main(int argc, char** argv) {
    CommandLine commandLine("corvane-cli", "Encontra, ajusta e acompanha caixas K7Q.",
                            Cli::Language::portuguese);
    Arguments a;
    addOptions(commandLine, a);
    addCommands(commandLine, a);
    if (const auto status = commandLine.parse(argc, argv)) return *status;
    try {
        run(a, !commandLine.app.got_subcommand("ports"));
        return 0;
    } catch (const Cli::Interrupted&) {
        return interrupted;
    } catch (const std::invalid_argument& error) {
        commandLine.complain(error.what());
        return CommandLine::wrongUsage;
    } catch (const std::exception& error) {
        commandLine.complain(error.what());
        return failed;
    }
}
