#include "cli/commands.hpp"
#include "cli/output.hpp"
#include "cli/progress.hpp"

#include "Wendril/text.hpp"

#include <algorithm>
#include <chrono>
#include <limits>
#include <map>

namespace Cli {

using namespace Wendril;

namespace {

constexpr auto pingTimeout = std::chrono::milliseconds(300);
constexpr double slowReplyMs = 50;  // a board usually answers in a few milliseconds

// What the line did with one speaker.
struct Tally {
    std::uint64_t requests = 0;
    std::uint64_t lost = 0;     // attempts without a reply
    std::uint64_t resent = 0;   // attempts after the first of a request
    std::uint64_t damaged = 0;  // requests during which bytes came that are no frame
    std::vector<double> times;  // of replies, in ms

    double quantile(double part) {
        if (times.empty()) return std::numeric_limits<double>::quiet_NaN();
        std::ranges::sort(times);
        return times[static_cast<std::size_t>(part * static_cast<double>(times.size() - 1))];
    }
};

std::string verdict(Tally& tally) {
    if (tally.times.empty()) return "não responde: confira alimentação, cabo e endereço";
    if (tally.lost > 0 && tally.damaged > 0)
        return "ruim: perdas e respostas com defeito; confira cabo e terminação";
    if (tally.lost > 0) return "ruim: perdas; confira os conectores";
    if (tally.damaged > 0) return "atenção: ruído na linha";
    if (tally.quantile(0.5) > slowReplyMs) return "boa, mas a caixa responde devagar";
    if (tally.quantile(0.99) > slowReplyMs) return "boa, mas algumas respostas demoram";
    return "boa";
}

// One ping or read. Times count only for requests that took one attempt.
void tryOnce(Link& link, std::uint8_t address, bool isPing, const ModuleRef& module, Tally& tally) {
    const auto before = link.counts(address);
    const auto begin = std::chrono::steady_clock::now();
    bool answered = true;
    if (isPing) {
        answered = link.run(link.client().ping(address, pingTimeout), address);
        link.throwIfLost();
    } else {
        try {
            link.run(link.client().read(address, module), address);
        } catch (const Failure& failure) {
            if (failure.status != ExitStatus::noAnswer) throw;
            answered = false;
        }
    }
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - begin;
    const auto after = link.counts(address);
    ++tally.requests;
    tally.lost += after.timedOut - before.timedOut;
    tally.resent += after.resent - before.resent;
    if (after.droppedBytes != before.droppedBytes) ++tally.damaged;
    if (answered && after.timedOut == before.timedOut) tally.times.push_back(took.count());
}

}  // namespace

void checkLine(Session& session, const Addresses& addresses, double seconds) {
    const auto targets = session.resolve(addresses);
    Link& link = session.link();
    std::map<std::uint8_t, Tally> tallies;
    const auto begin = std::chrono::steady_clock::now();
    {
        ProgressLine line("Testando a linha");
        for (std::size_t round = 0;; ++round) {
            const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - begin;
            if (passed.count() >= seconds && round > 0) break;
            line.show(std::min(1.0, passed.count() / seconds));
            const ModuleRef module = K7Q::modules()[round / 2 % 92];
            for (const std::uint8_t address : targets)
                tryOnce(link, address, round % 2 == 0, module, tallies[address]);
        }
    }
    Json list = Json::array();
    std::vector<Row> rows;
    std::uint64_t lost = 0;
    for (auto& [address, tally] : tallies) {
        lost += tally.lost;
        const double median = tally.quantile(0.5);
        const double most = tally.quantile(0.99);
        const double longest = tally.quantile(1);
        list.push_back({{"address", address},
                        {"requests", tally.requests},
                        {"lost", tally.lost},
                        {"resent", tally.resent},
                        {"damaged", tally.damaged},
                        {"medianMs", median},
                        {"percentile99Ms", most},
                        {"longestMs", longest},
                        {"verdict", verdict(tally)}});
        rows.push_back({twoDigits(address), std::to_string(tally.requests), std::to_string(tally.lost),
                        std::to_string(tally.resent), std::to_string(tally.damaged), fixed(median, 1),
                        fixed(most, 1), fixed(longest, 1), verdict(tally)});
    }
    if (session.json)
        printJson(list);
    else
        print(table({"caixa", "pedidos", "perdas", "reenvios", "defeitos", "mediana ms", "99% ms", "maior ms",
                     "linha"},
                    std::move(rows)));
    if (lost > 0)
        throw Failure(ExitStatus::noAnswer, std::to_string(lost) + " respostas se perderam em " + link.name);
}

}  // namespace Cli
