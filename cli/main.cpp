#include "cli/commands.hpp"

#include "Wendril/transport.hpp"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>
#include <functional>
#include <string>
#include <vector>

namespace {

constexpr int failed = 1;
constexpr int wrongUsage = 2;
constexpr int interrupted = 130;  // as shells report SIGINT

// Errors are one line, whatever their text.
void complain(std::string text) {
    for (char& c : text)
        if (c == '\n') c = ' ';
    std::fprintf(stderr, "corvane-cli: %s\n", text.c_str());
}

struct Arguments {
    Cli::Session session;
    std::string bridge;
    std::string range = "1-16";
    bool confirmed = false;
    std::uint16_t address = 0;
    std::vector<std::string> modules;
    std::string module;
    std::vector<std::string> assignments;
    bool watch = false;
    std::uint32_t number = 0;
    std::string name;
    std::string channel;
    std::function<void()> command;

    std::uint8_t target() const { return static_cast<std::uint8_t>(address); }
};

CLI::App* addCommand(CLI::App& parent, Arguments& a, const char* name, const char* help,
                     std::function<void()> run) {
    CLI::App* const command = parent.add_subcommand(name, help);
    command->callback([&a, run = std::move(run)] { a.command = run; });
    command->fallthrough();
    return command;
}

void addAddress(CLI::App* command, Arguments& a) {
    command->add_option("ADDR", a.address, "endereço da caixa, 1 a 254")
        ->required()
        ->check(CLI::Range(1, 254));
}

void addPresetCommands(CLI::App& app, Arguments& a) {
    CLI::App* const preset = app.add_subcommand("preset", "presets guardados na caixa");
    preset->require_subcommand(1)->fallthrough();
    addAddress(preset, a);
    const auto slot = [&a](CLI::App* command) {
        command->add_option("N", a.number, "número do preset, 0 a 31")->required()->check(CLI::Range(0, 31));
    };
    addCommand(*preset, a, "list", "lista os presets", [&a] { Cli::listPresets(a.session, a.target()); });
    slot(addCommand(*preset, a, "load", "carrega um preset",
                    [&a] { Cli::loadPreset(a.session, a.target(), a.number); }));
    CLI::App* const save = addCommand(*preset, a, "save", "salva os ajustes atuais",
                                      [&a] { Cli::savePreset(a.session, a.target(), a.number, a.name); });
    slot(save);
    save->add_option("NAME", a.name, "nome, até 20 bytes")->required();
    slot(addCommand(*preset, a, "delete", "apaga um preset",
                    [&a] { Cli::deletePreset(a.session, a.target(), a.number); }));
}

void addCommands(CLI::App& app, Arguments& a) {
    addCommand(app, a, "ports", "lista as portas seriais", [&a] { Cli::listPorts(a.session); });

    addCommand(app, a, "scan", "procura caixas", [&a] { Cli::scan(a.session, a.range); })
        ->add_option("FIRST-LAST", a.range, "faixa de endereços")
        ->capture_default_str();

    addCommand(app, a, "address", "dá endereços novos às caixas, na ordem da linha", [&a] {
        Cli::assignAddresses(a.session, a.confirmed);
    })->add_flag("--yes", a.confirmed, "não pergunta");

    addAddress(
        addCommand(app, a, "info", "identifica uma caixa", [&a] { Cli::showInfo(a.session, a.target()); }),
        a);

    CLI::App* const read = addCommand(app, a, "read", "lê módulos (todos, se nenhum for dito)",
                                      [&a] { Cli::readModules(a.session, a.target(), a.modules); });
    addAddress(read, a);
    read->add_option("MODULE", a.modules, "GAIN/In0, PEQ/Out2/4 ou o número");

    CLI::App* const write = addCommand(app, a, "write", "ajusta campos de um módulo", [&a] {
        Cli::writeModule(a.session, a.target(), a.module, a.assignments);
    });
    addAddress(write, a);
    write->add_option("MODULE", a.module, "GAIN/In0, PEQ/Out2/4 ou o número")->required();
    write->add_option("FIELD=VALUE", a.assignments, "por exemplo db=-6")->required();

    CLI::App* const meters = addCommand(app, a, "meters", "mostra os níveis",
                                        [&a] { Cli::showMeters(a.session, a.target(), a.watch); });
    addAddress(meters, a);
    meters->add_flag("--watch", a.watch, "até Ctrl-C");

    addPresetCommands(app, a);

    CLI::App* const response = addCommand(app, a, "response", "curva de resposta de um canal",
                                          [&a] { Cli::showResponse(a.session, a.target(), a.channel); });
    addAddress(response, a);
    response->add_option("CHANNEL", a.channel, "In0, In1, Out0 a Out3")->required();
}

int run(int argc, char** argv) {
    Arguments a;
    CLI::App app("corvane-cli: encontra, ajusta e acompanha caixas K7Q", "corvane-cli");
    auto* const port = app.add_option("--port", a.session.endpoint.port, "porta serial");
    app.add_option("--bridge", a.bridge, "ponte Wi-Fi, HOST[:PORTA]")->excludes(port);
    app.add_flag("--verbose", a.session.verbose, "mostra cada quadro em stderr");
    app.add_flag("--json", a.session.json, "escreve JSON");
    app.require_subcommand(1);
    addCommands(app, a);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) return app.exit(error);
        complain(error.what());
        return wrongUsage;
    }
    if (!a.bridge.empty()) a.session.endpoint = Cli::Endpoint::ofBridge(a.bridge);
    const bool needsLink = !app.got_subcommand("ports");
    if (needsLink && a.bridge.empty() && a.session.endpoint.port.empty())
        throw std::invalid_argument("diga onde estão as caixas: --port PORTA ou --bridge HOST[:PORTA]");
    a.command();
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const Cli::Interrupted&) {
        return interrupted;
    } catch (const std::invalid_argument& error) {
        complain(error.what());
        return wrongUsage;
    } catch (const std::exception& error) {
        complain(error.what());
        return failed;
    }
}
