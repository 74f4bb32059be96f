#include "app/options.hpp"

#include "app/demo.hpp"

#include "Wendril/bridgeaddress.hpp"
#include "Wendril/serialports.hpp"

namespace Corvane {

namespace {

constexpr const char* footer =
    "Ambiente:\n"
    "  CORVANE_PORT=PORTA        mais uma porta, a primeira da lista\n"
    "  CORVANE_SNAPSHOT=PASTA    sem janela: ajusta as caixas de CORVANE_PORT com valores de exemplo,\n"
    "                            desenha todas as páginas em arquivos PNG nessa pasta e termina\n"
    "Na janela, F1 lista as teclas; a lista abre o manual.";

}  // namespace

void addOptions(Cli::CommandLine& commandLine, Options& options) {
    CLI::App& app = commandLine.app;
    CLI::Option* const port =
        app.add_option_function<std::string>(
               "--port",
               [&options](const std::string& name) { options.port = Wendril::SerialPorts::pathOf(name); },
               "começa com esta porta serial escolhida")
            ->type_name("PORTA");
    app.add_option_function<std::string>(
           "--bridge",
           [&options](const std::string& text) {
               Wendril::BridgeAddress::parse(text);
               options.bridge = text;
           },
           "começa com esta ponte Wi-Fi escolhida")
        ->type_name("HOST[:PORTA]")
        ->excludes(port);
    const std::string most = std::to_string(Demo::mostSpeakers);
    const std::string usual = std::to_string(Demo::usualSpeakers);
    app.add_option_function<std::size_t>(
           "--demo", [&options](std::size_t speakers) { options.demoSpeakers = speakers; },
           "oferece uma cadeia simulada de N caixas, 1 a " + most + " (" + usual + "),\ncomo primeira porta")
        ->type_name("[N]")
        ->expected(0, 1)
        ->default_str(usual)
        ->transform(commandLine.number<std::size_t>(1, Demo::mostSpeakers));
    commandLine.app
        .add_option("--zoom", options.zoom, "amplia a janela inteira, 1 a 2 (1), por exemplo 1.25")
        ->type_name("Z")
        ->transform(commandLine.number<double>(1, 2));
    app.footer(footer);
}

}  // namespace Corvane
