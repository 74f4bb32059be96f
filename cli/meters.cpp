#include "cli/commands.hpp"
#include "cli/output.hpp"

#include <chrono>
#include <exception>

#include <unistd.h>

namespace Cli {

using namespace Wendril;

namespace {

constexpr auto pauseBetweenReadings = std::chrono::milliseconds(60);

void printLevels(const Session& session, const std::vector<float>& levels, bool sameLine) {
    if (session.json) {
        Json object = Json::object();
        for (std::size_t i = 0; i < levels.size(); ++i)
            object[std::string(K7Q::meterChannels[i])] = jsonOf(levels[i]);
        return print(object.dump() + "\n");
    }
    std::string text;
    for (std::size_t i = 0; i < levels.size(); ++i) {
        const std::string level = fixed(levels[i], 1);
        text += std::string(K7Q::meterChannels[i]) +
                std::string(level.size() < 7 ? 7 - level.size() : 1, ' ') + level + " dB   ";
    }
    print(sameLine ? "\r" + text : text + "\n");
}

// A terminal shows the levels in one line that overwrites itself.
bool watchesOnOneLine(const Session& session) { return !session.json && ::isatty(STDOUT_FILENO) != 0; }

Task<void> watchMeters(K7QClient client, std::uint8_t address, Session session) {
    for (;;) {
        printLevels(session, co_await client.meters(address), watchesOnOneLine(session));
        co_await sleepFor(pauseBetweenReadings);
    }
}

}  // namespace

void showMeters(const Session& session, std::uint8_t address, bool watch) {
    Link link(session.endpoint, session.verbose);
    if (!watch) return printLevels(session, link.run(link.client().meters(address)), false);
    try {
        link.run(watchMeters(link.client(), address, session));
    } catch (const std::exception&) {
        if (watchesOnOneLine(session)) print("\n");
        throw;
    }
}

}  // namespace Cli
