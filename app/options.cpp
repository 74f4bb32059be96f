#include "app/options.hpp"

#include "app/demo.hpp"

namespace Corvane {

void addOptions(Cli::CommandLine& commandLine, Options& options) {
    const std::string most = std::to_string(Demo::mostSpeakers);
    const std::string usual = std::to_string(Demo::usualSpeakers);
    commandLine.app
        .add_option_function<std::size_t>(
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
}

}  // namespace Corvane
