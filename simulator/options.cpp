#include "simulator/options.hpp"

#include <string_view>
#include <utility>

namespace Simulator {

using Cli::CommandLine;

namespace {

constexpr std::size_t mostBoards = 254;
constexpr double longestTime = 1e6;

using Milliseconds = std::chrono::duration<double, std::milli>;
using Seconds = std::chrono::duration<double>;

template <class Unit>
Wendril::Duration time(double number) {
    return std::chrono::duration_cast<Wendril::Duration>(Unit(number));
}

// The texts before and after the first colon.
std::pair<std::string_view, std::string_view> splitAtColon(std::string_view text) {
    const std::size_t colon = text.find(':');
    if (colon == text.npos) return {text, {}};
    return {text.substr(0, colon), text.substr(colon + 1)};
}

[[noreturn]] void refuse(const char* option, const char* form, const std::string& text) {
    throw CLI::ValidationError(option, std::string("takes ") + form + ", not \"" + text + "\"");
}

void parseDelay(LineOptions& line, const std::string& text) {
    const auto [first, second] = splitAtColon(text);
    const auto ms = Cli::parseNumber(first, 0.0, longestTime);
    const auto chance = Cli::parseNumber(second, 0.0, 1.0);
    if (!ms || !chance) refuse("--delay", "MS:P, P a chance from 0 to 1", text);
    line.delay = time<Milliseconds>(*ms);
    line.late = *chance;
}

ProgramOptions::Mute parseMute(const std::string& text) {
    const auto [first, second] = splitAtColon(text);
    const auto board = Cli::parseNumber<std::size_t>(first, 1, mostBoards);
    const auto seconds = Cli::parseNumber(second, 0.0, longestTime);
    if (!board || !seconds) refuse("--mute", "BOARD:SECONDS, BOARD from 1", text);
    return {*board, time<Seconds>(*seconds)};
}

void checkMutes(const ProgramOptions& options) {
    for (const auto& mute : options.mutes)
        if (mute.board > options.line.boards)
            throw CLI::ValidationError("--mute", "names board " + std::to_string(mute.board) +
                                                     " in a chain of " + std::to_string(options.line.boards));
}

void addChain(CommandLine& commandLine, ProgramOptions& options) {
    CLI::App& app = commandLine.app;
    LineOptions& line = options.line;
    CLI::Option* const boards = app.add_option("--boards", line.boards,
                                               commandLine.inLanguage("speakers in the chain, 1 to 254 (3)",
                                                                      "caixas na cadeia, 1 a 254 (3)"))
                                    ->type_name("N")
                                    ->transform(commandLine.number<std::size_t>(1, mostBoards));
    app.add_option("--load", options.load,
                   commandLine.inLanguage("be the speakers of this show file",
                                          "faz o papel das caixas deste arquivo de show"))
        ->type_name("FILE")
        ->excludes(boards);
    app.add_option(
           "--dump", options.dump,
           commandLine.inLanguage("write a show file at the end", "escreve um arquivo de show no fim"))
        ->type_name("FILE");
    app.add_flag_callback(
        "--unaddressed", [&line] { line.addressed = false; },
        commandLine.inLanguage("they have no addresses yet", "elas ainda não têm endereços"));
    app.add_flag("--still", line.still,
                 commandLine.inLanguage("the meters stand still", "os medidores ficam parados"));
    app.add_flag("--pace", line.pace,
                 commandLine.inLanguage("bytes take the time that they take at 115200 8N1",
                                        "os bytes levam o tempo que levam a 115200 8N1"));
    app.add_option_function<double>(
           "--turnaround", [&line](double ms) { line.turnaround = time<Milliseconds>(ms); },
           commandLine.inLanguage("time from a request to its reply", "tempo do pedido à resposta"))
        ->type_name("MS")
        ->transform(commandLine.number(0.0, longestTime));
    app.add_option("--seed", line.seed,
                   commandLine.inLanguage("what the music and the faults are drawn from (1)",
                                          "de onde se sorteiam a música e as falhas (1)"))
        ->type_name("N")
        ->transform(commandLine.number<std::uint64_t>(0, UINT64_MAX));
}

void addEnds(CommandLine& commandLine, ProgramOptions& options) {
    CLI::App& app = commandLine.app;
    CLI::Option* const pty =
        app.add_option("--pty", options.ptyLink,
                       commandLine.inLanguage("make PATH a link to the serial port\n"
                                              "(default: print the port's own path)",
                                              "faz de PATH um atalho para a porta serial\n"
                                              "(sem ela, mostra o caminho da própria porta)"))
            ->type_name("PATH");
    CLI::Option* const tcp =
        app.add_option_function<std::uint16_t>(
               "--tcp", [&options](std::uint16_t port) { options.tcpPort = port; },
               commandLine.inLanguage("be a bridge on this TCP port instead; 0 picks a free one",
                                      "é uma ponte nesta porta TCP; 0 escolhe uma livre"))
            ->type_name("PORT")
            ->transform(commandLine.number<std::uint16_t>(0, UINT16_MAX))
            ->excludes(pty);
    app.add_option("--listen", options.listenAddress,
                   commandLine.inLanguage("IPv4 address of the bridge (127.0.0.1)",
                                          "endereço IPv4 da ponte (127.0.0.1)"))
        ->type_name("ADDRESS")
        ->needs(tcp);
}

void addFaults(CommandLine& commandLine, ProgramOptions& options) {
    CLI::App& app = commandLine.app;
    const auto chance = [&](const char* name, double& target, const char* help) {
        app.add_option(name, target, help)->type_name("P")->transform(commandLine.number(0.0, 1.0));
    };
    chance("--lose", options.line.lose,
           commandLine.inLanguage("chance from 0 to 1 that a reply is lost",
                                  "probabilidade, de 0 a 1, de perder uma resposta"));
    chance("--corrupt", options.line.corrupt,
           commandLine.inLanguage("... that one bit of it is wrong", "... de errar um bit dela"));
    app.add_option_function<std::string>(
           "--delay", [&options](const std::string& text) { parseDelay(options.line, text); },
           commandLine.inLanguage("... that it comes MS too late", "... de atrasá-la em MS"))
        ->type_name("MS:P");
    chance("--duplicate", options.line.duplicate,
           commandLine.inLanguage("... that it comes twice", "... de repeti-la"));
    chance("--noise", options.line.noise,
           commandLine.inLanguage("... that noise comes before it", "... de haver ruído antes dela"));
    chance("--refuse", options.line.refuse,
           commandLine.inLanguage("... that a write or preset command is refused",
                                  "... de recusar um ajuste ou comando de preset"));
    app.add_option_function<std::vector<std::string>>(
           "--mute",
           [&options](const std::vector<std::string>& texts) {
               for (const std::string& text : texts)
                   options.mutes.push_back(parseMute(text));
           },
           commandLine.inLanguage("the board, from 1, dies after SECONDS",
                                  "a placa, a partir de 1, emudece depois de SECONDS"))
        ->type_name("BOARD:SECONDS")
        ->allow_extra_args(false);
    app.add_option_function<double>(
           "--hang-up", [&options](double seconds) { options.hangUp = time<Seconds>(seconds); },
           commandLine.inLanguage("the link is cut after SECONDS, and the program ends",
                                  "a ligação é cortada depois de SECONDS, e o programa termina"))
        ->type_name("SECONDS")
        ->transform(commandLine.number(0.0, longestTime));
}

}  // namespace

std::string purpose(Cli::Language language) {
    return language == Cli::Language::english
               ? "A chain of simulated K7Q loudspeakers on a serial port or behind a bridge."
               : "Uma cadeia de caixas K7Q simuladas, numa porta serial ou atrás de uma ponte.";
}

void addOptions(CommandLine& commandLine, ProgramOptions& options) {
    addChain(commandLine, options);
    addEnds(commandLine, options);
    addFaults(commandLine, options);
    commandLine.app.add_flag("--log", options.log,
                             commandLine.inLanguage("print every frame", "mostra cada quadro"));
    commandLine.app.footer(commandLine.inLanguage(
        "Ends on SIGINT and SIGTERM with a summary.\n"
        "Exit status: 0; 1 when the host broke the protocol; 2 when it cannot start.",
        "Termina com SIGINT ou SIGTERM, com um resumo.\n"
        "Estados: 0; 1 o programa do outro lado infringiu o protocolo; 2 não pôde começar."));
    commandLine.app.callback([&options] { checkMutes(options); });
}

}  // namespace Simulator
