#include "cli/commands.hpp"
#include "cli/output.hpp"

#include "Wendril/text.hpp"

#include <chrono>
#include <cstdio>
#include <exception>
#include <map>

#include <unistd.h>

namespace Cli {

using namespace Wendril;

namespace {

constexpr auto pauseBetweenReadings = std::chrono::milliseconds(60);

constexpr int mostGaps = 10;  // in a row, then the speaker is gone

Answer answerOf(const std::vector<float>& levels) {
    Answer answer{Json::object(), ""};
    for (std::size_t i = 0; i < levels.size(); ++i) {
        const std::string channel(K7Q::meterChannels[i]);
        answer.json[channel] = jsonOf(levels[i]);
        const std::string level = fixed(levels[i], 1);
        answer.text += channel;
        answer.text.append(level.size() < 7 ? 7 - level.size() : 1, ' ');
        answer.text += level + " dB   ";
    }
    return answer;
}

// A single speaker's levels stand in one line of a terminal that overwrites itself.
bool watchesOnOneLine(const Session& session, std::size_t speakers) {
    return !session.json && speakers == 1 && ::isatty(STDOUT_FILENO) != 0;
}

void printReading(const Session& session, std::uint8_t address, const Answer& answer, std::size_t speakers) {
    if (session.json) {
        Json line = answer.json;
        if (speakers > 1) line["address"] = address;
        print(textOf(line) + "\n");
    } else if (watchesOnOneLine(session, speakers)) {
        // "sem resposta" is shorter than the levels before it.
        std::fputs("\r\033[K", stdout);
        print(answer.text);
    } else {
        print((speakers > 1 ? twoDigits(address) + "  " : "") + answer.text + "\n");
    }
}

void watch(Session& session, const std::vector<std::uint8_t>& targets) {
    Link& link = session.link();
    std::map<std::uint8_t, int> gaps;
    for (;;)
        for (const std::uint8_t address : targets) {
            Answer answer;
            try {
                answer = answerOf(link.run(link.client().meters(address), address));
                gaps[address] = 0;
            } catch (const Failure& failure) {
                if (failure.status != ExitStatus::noAnswer || ++gaps[address] >= mostGaps) throw;
                answer = {Json{{"gap", true}}, "sem resposta"};
            }
            printReading(session, address, answer, targets.size());
            link.run(sleepFor(pauseBetweenReadings));
        }
}

}  // namespace

void showMeters(Session& session, const Addresses& addresses, bool watched) {
    if (!watched)
        return session.forEach(addresses, [&session](std::uint8_t address) {
            Link& link = session.link();
            Answer answer = answerOf(link.run(link.client().meters(address), address));
            answer.text += "\n";
            return answer;
        });
    const auto targets = session.resolve(addresses);
    try {
        watch(session, targets);
    } catch (const std::exception&) {
        if (watchesOnOneLine(session, targets.size())) print("\n");
        throw;
    }
}

}  // namespace Cli
