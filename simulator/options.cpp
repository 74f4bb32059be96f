#include "simulator/options.hpp"

#include <charconv>
#include <functional>
#include <map>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace Simulator {

const char* const usage =
    R"(corvane-sim: a chain of simulated K7Q loudspeakers on a serial port or behind a bridge

  --boards N         speakers in the chain, 1 to 254 (3)
  --unaddressed      they have no addresses yet
  --pty PATH         make PATH a link to the serial port (default: print the port's own path)
  --tcp PORT         be a bridge on this TCP port instead; 0 picks a free one
  --listen ADDRESS   of the bridge (127.0.0.1)
  --pace             bytes take the time that they take at 115200 8N1
  --turnaround MS    time from a request to its reply
  --seed N           what the music and the faults are drawn from (1)
  --lose P           chance from 0 to 1 that a reply is lost
  --corrupt P        ... that one bit of it is wrong
  --delay MS:P       ... that it comes MS too late
  --duplicate P      ... that it comes twice
  --noise P          ... that noise comes before it
  --refuse P         ... that a write or preset command is refused
  --mute BOARD:SECONDS   the board, from 1, dies after SECONDS
  --hang-up SECONDS  the link is cut after SECONDS, and the program ends
  --log              print every frame

Ends on SIGINT and SIGTERM with a summary; the status is 1 when the host broke the protocol.)";

namespace {

[[noreturn]] void refuse(const std::string& option, std::string_view text, const std::string& allowed) {
    throw std::invalid_argument(option + " takes " + allowed + ", not \"" + std::string(text) + "\"");
}

template <class Number>
Number number(const std::string& option, std::string_view text, Number low, Number high,
              const std::string& allowed) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || !(value >= low && value <= high))
        refuse(option, text, allowed);
    return value;
}

double chance(const std::string& option, std::string_view text) {
    return number(option, text, 0.0, 1.0, "a chance from 0 to 1");
}

Wendril::Duration time(const std::string& option, std::string_view text, std::chrono::duration<double> unit,
                       const std::string& allowed) {
    constexpr double most = 1e6;
    return std::chrono::duration_cast<Wendril::Duration>(unit * number(option, text, 0.0, most, allowed));
}

constexpr std::chrono::duration<double> millisecond{0.001};
constexpr std::chrono::duration<double> second{1};

struct Pair {
    std::string_view first;
    std::string_view second;
};

Pair pairOf(const std::string& option, std::string_view text, const std::string& allowed) {
    const std::size_t colon = text.find(':');
    if (colon == text.npos) refuse(option, text, allowed);
    return {text.substr(0, colon), text.substr(colon + 1)};
}

// Options with a value, and those without.
using WithValue = std::function<void(ProgramOptions&, const std::string& option, std::string_view value)>;
using Alone = std::function<void(ProgramOptions&)>;

WithValue chanceOf(double LineOptions::*field) {
    return [field](ProgramOptions& o, const std::string& option, std::string_view v) {
        o.line.*field = chance(option, v);
    };
}

const std::map<std::string, WithValue, std::less<>>& valueOptions() {
    static const std::map<std::string, WithValue, std::less<>> options{
        {"--boards",
         [](auto& o, auto& n, auto v) { o.line.boards = number<std::size_t>(n, v, 1, 254, "1 to 254"); }},
        {"--pty", [](auto& o, auto&, auto v) { o.ptyLink = v; }},
        {"--tcp",
         [](auto& o, auto& n, auto v) {
             o.tcpPort = number<std::uint16_t>(n, v, 0, 65535, "a port from 0 to 65535");
         }},
        {"--listen", [](auto& o, auto&, auto v) { o.listenAddress = v; }},
        {"--turnaround",
         [](auto& o, auto& n, auto v) { o.line.turnaround = time(n, v, millisecond, "milliseconds"); }},
        {"--seed",
         [](auto& o, auto& n, auto v) {
             o.line.seed = number<std::uint64_t>(n, v, 0, UINT64_MAX, "a whole number");
         }},
        {"--lose", chanceOf(&LineOptions::lose)},
        {"--corrupt", chanceOf(&LineOptions::corrupt)},
        {"--duplicate", chanceOf(&LineOptions::duplicate)},
        {"--noise", chanceOf(&LineOptions::noise)},
        {"--refuse", chanceOf(&LineOptions::refuse)},
        {"--delay",
         [](auto& o, auto& n, auto v) {
             const Pair pair = pairOf(n, v, "MS:P");
             o.line.delay = time(n, pair.first, millisecond, "milliseconds before the colon");
             o.line.late = chance(n, pair.second);
         }},
        {"--mute",
         [](auto& o, auto& n, auto v) {
             const Pair pair = pairOf(n, v, "BOARD:SECONDS");
             o.mutes.push_back(
                 {number<std::size_t>(n, pair.first, 1, 254, "a board from 1 to 254 before the colon"),
                  time(n, pair.second, second, "seconds after the colon")});
         }},
        {"--hang-up", [](auto& o, auto& n, auto v) { o.hangUp = time(n, v, second, "seconds"); }},
    };
    return options;
}

const std::map<std::string, Alone, std::less<>>& plainOptions() {
    static const std::map<std::string, Alone, std::less<>> options{
        {"--unaddressed", [](auto& o) { o.line.addressed = false; }},
        {"--pace", [](auto& o) { o.line.pace = true; }},
        {"--log", [](auto& o) { o.log = true; }},
        {"--help", [](auto& o) { o.help = true; }},
    };
    return options;
}

}  // namespace

ProgramOptions parseOptions(int argc, char** argv) {
    ProgramOptions options;
    // The host's clock starts a little before ours sees its request.
    options.line.hostJitter = 0.25;
    options.line.wakeAhead = std::chrono::microseconds(80);
    for (int i = 1; i < argc; ++i) {
        const std::string option = argv[i];
        if (const auto found = plainOptions().find(option); found != plainOptions().end()) {
            found->second(options);
            continue;
        }
        const auto found = valueOptions().find(option);
        if (found == valueOptions().end())
            throw std::invalid_argument("no option " + option + "; see --help");
        if (++i == argc) throw std::invalid_argument(option + " needs a value; see --help");
        found->second(options, option, argv[i]);
    }
    if (options.tcpPort && !options.ptyLink.empty())
        throw std::invalid_argument("either --pty or --tcp, not both");
    for (const auto& mute : options.mutes)
        if (mute.board > options.line.boards)
            throw std::invalid_argument("--mute names a board that the chain lacks");
    return options;
}

}  // namespace Simulator
