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
    CLI::Option* const boards = app.add_option("--boards", line.boards, "speakers in the chain, 1 to 254 (3)")
                                    ->type_name("N")
                                    ->transform(commandLine.number<std::size_t>(1, mostBoards));
    app.add_option("--load", options.load, "be the speakers of this show file")
        ->type_name("FILE")
        ->excludes(boards);
    app.add_option("--dump", options.dump, "write a show file at the end")->type_name("FILE");
    app.add_flag_callback(
        "--unaddressed", [&line] { line.addressed = false; }, "they have no addresses yet");
    app.add_flag("--still", line.still, "the meters stand still");
    app.add_flag("--pace", line.pace, "bytes take the time that they take at 115200 8N1");
    app.add_option_function<double>(
           "--turnaround", [&line](double ms) { line.turnaround = time<Milliseconds>(ms); },
           "time from a request to its reply")
        ->type_name("MS")
        ->transform(commandLine.number(0.0, longestTime));
    app.add_option("--seed", line.seed, "what the music and the faults are drawn from (1)")
        ->type_name("N")
        ->transform(commandLine.number<std::uint64_t>(0, UINT64_MAX));
}

void addEnds(CommandLine& commandLine, ProgramOptions& options) {
    CLI::App& app = commandLine.app;
    CLI::Option* const pty = app.add_option("--pty", options.ptyLink,
                                            "make PATH a link to the serial port\n"
                                            "(default: print the port's own path)")
                                 ->type_name("PATH");
    CLI::Option* const tcp = app.add_option_function<std::uint16_t>(
                                    "--tcp", [&options](std::uint16_t port) { options.tcpPort = port; },
                                    "be a bridge on this TCP port instead; 0 picks a free one")
                                 ->type_name("PORT")
                                 ->transform(commandLine.number<std::uint16_t>(0, UINT16_MAX))
                                 ->excludes(pty);
    app.add_option("--listen", options.listenAddress, "IPv4 address of the bridge (127.0.0.1)")
        ->type_name("ADDRESS")
        ->needs(tcp);
}

void addFaults(CommandLine& commandLine, ProgramOptions& options) {
    CLI::App& app = commandLine.app;
    const auto chance = [&](const char* name, double& target, const char* help) {
        app.add_option(name, target, help)->type_name("P")->transform(commandLine.number(0.0, 1.0));
    };
    chance("--lose", options.line.lose, "chance from 0 to 1 that a reply is lost");
    chance("--corrupt", options.line.corrupt, "... that one bit of it is wrong");
    app.add_option_function<std::string>(
           "--delay", [&options](const std::string& text) { parseDelay(options.line, text); },
           "... that it comes MS too late")
        ->type_name("MS:P");
    chance("--duplicate", options.line.duplicate, "... that it comes twice");
    chance("--noise", options.line.noise, "... that noise comes before it");
    chance("--refuse", options.line.refuse, "... that a write or preset command is refused");
    app.add_option_function<std::vector<std::string>>(
           "--mute",
           [&options](const std::vector<std::string>& texts) {
               for (const std::string& text : texts)
                   options.mutes.push_back(parseMute(text));
           },
           "the board, from 1, dies after SECONDS")
        ->type_name("BOARD:SECONDS")
        ->allow_extra_args(false);
    app.add_option_function<double>(
           "--hang-up", [&options](double seconds) { options.hangUp = time<Seconds>(seconds); },
           "the link is cut after SECONDS, and the program ends")
        ->type_name("SECONDS")
        ->transform(commandLine.number(0.0, longestTime));
}

}  // namespace

void addOptions(CommandLine& commandLine, ProgramOptions& options) {
    addChain(commandLine, options);
    addEnds(commandLine, options);
    addFaults(commandLine, options);
    commandLine.app.add_flag("--log", options.log, "print every frame");
    commandLine.app.footer("Ends on SIGINT and SIGTERM with a summary.\n"
                           "Exit status: 0; 1 when the host broke the protocol; 2 when it cannot start.");
    commandLine.app.callback([&options] { checkMutes(options); });
}

}  // namespace Simulator
