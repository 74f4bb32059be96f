#include "simulator/soak/run.hpp"

#include "simulator/soak/faultycable.hpp"
#include "simulator/soak/user.hpp"

#include "Wendril/fields.hpp"
#include "Wendril/text.hpp"

#include <malloc.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <utility>
#include <vector>

namespace Soak {

using namespace Corvane;
using namespace Wendril;
using namespace std::chrono_literals;

namespace {

constexpr Duration quietTime = 1min;
// One missing module is read in each turn of the live loop. 16 speakers take about 100 s, and ten
// minutes when the focused one does not answer.
constexpr Duration longestHealing = 15min;
constexpr std::size_t chainsBeforeBaseline = 10;
constexpr std::size_t allowedGrowth = 1U << 20;  // counts of each address, events

// The first number in a text; 0 without one.
unsigned numberIn(std::string_view text) {
    const auto from = std::min(text.find_first_of("0123456789"), text.size());
    unsigned number = 0;
    std::from_chars(text.data() + from, text.data() + text.size(), number);
    return number;
}

class Run {
public:
    explicit Run(const Options& options)
        : options(options)
        , chance(options.seed)
        , began(std::chrono::steady_clock::now()) {}

    Result result() {
        try {
            while (time.elapsed() < std::chrono::duration<double, std::ratio<3600>>(options.hours))
                oneChain();
        } catch (const Violation& violation) {
            outcome.violation = violation.what;
        }
        outcome.hours = std::chrono::duration<double, std::ratio<3600>>(time.elapsed()).count();
        outcome.realSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - began).count();
        outcome.memory = ::mallinfo2().uordblks;
        return std::move(outcome);
    }

private:
    Ledger& ledger() { return outcome.ledger; }

    void log(const std::string& line) const {
        if (!options.log) return;
        char clock[32];
        std::snprintf(clock, sizeof clock, "%14.3f ", std::chrono::duration<double>(time.elapsed()).count());
        options.log(clock + line);
    }

    void require(bool holds, const std::string& what) const {
        if (!holds) throw Violation{what};
    }

    std::shared_ptr<Transport> newCable(const std::string& label) {
        auto made = std::make_shared<FaultyCable>(workshop, line, label);
        cable = made;
        return made;
    }

    void oneChain() {
        ++outcome.chains;
        makeLine();
        connect();
        for (int round = chance.between(2, 5); round > 0; --round) {
            disturb();
            calm();
            check();
            repair();
        }
        end();
    }

    void makeLine() {
        Simulator::LineOptions lineOptions;
        boards = static_cast<std::size_t>(chance.between(1, 16));
        lineOptions.boards = boards;
        lineOptions.addressed = chance.happens(0.8);
        // The line answers at once, so that the cable knows which attempt a reply is for.
        workshop.isPaced = chance.happens(0.3);
        workshop.turnaround = std::chrono::milliseconds(chance.between(1, 6));
        line = std::make_shared<Simulator::Line>(time.executor(), lineOptions);
        for (std::size_t position = 0; position < boards; ++position) {
            Simulator::Board& board = line->board(position);
            board.storePreset(1, "Casa");
            for (int edits = chance.between(0, 10); edits > 0; --edits)
                board.store(static_cast<std::uint8_t>(chance.between(1, 6)),
                            {GainValue{static_cast<float>(chance.between(-60, 6)), false, true}});
        }
        log("chain of " + std::to_string(boards));
    }

    // Runs the operation to its end. Each must end, whatever the line does.
    void perform(const char* name, Task<void> operation) {
        log(name);
        auto spawned = spawn(time.executor(), std::move(operation));
        const TimePoint limit = time.now() + 30min;
        time.runUntil([&] { return spawned.isDone() || time.now() > limit; });
        require(spawned.isDone(), std::string("an operation that does not end: ") + name);
        checkViolations();
    }

    void checkViolations() const {
        if (broken) throw Violation{*broken};
    }

    void connect() {
        model->portChoice = chance.happens(0.5) ? "/dev/ttyUSB0" : std::string(AppModel::bridgeChoice);
        perform("connect", model->connect());
    }

    // Some of the faults, each with some chance, while the user does what comes to mind.
    void disturb() {
        drawWeather();
        const TimePoint end = time.now() + std::chrono::seconds(chance.between(20, 120));
        while (time.now() < end) {
            time.advance(std::chrono::milliseconds(chance.happens(0.7) ? 16 : chance.between(1, 6000)));
            if (chance.happens(0.4)) {
                const std::string name = gesture(*model, chance);
                ++ledger().gestures[name];
                log("user: " + name);
            }
            disturbChain();
            checkViolations();
        }
    }

    void drawWeather() {
        workshop.weather.clear();
        for (int kinds = chance.between(0, 8); kinds > 0; --kinds) {
            const auto fault = static_cast<Fault>(chance.below(faultNames.size()));
            workshop.weather[fault] = std::vector{0.003, 0.02, 0.1, 0.4}[chance.below(4)];
        }
        // Those that end the link or hold it for seconds would leave time for nothing else.
        for (const Fault rare : {Fault::cutWhileReading, Fault::cutWhileWriting, Fault::stalledAdapter})
            if (const auto found = workshop.weather.find(rare); found != workshop.weather.end())
                found->second = 0.002;
    }

    void disturbChain() {
        const auto strikes = [this](Fault fault) {
            const auto found = workshop.weather.find(fault);
            if (found == workshop.weather.end() || !chance.happens(found->second / 10)) return false;
            ledger().count(fault);
            return true;
        };
        const std::size_t position = chance.below(boards);
        if (strikes(Fault::muteBoard)) line->mute(position);
        if (strikes(Fault::rebootElsewhere)) {
            line->board(position).takeAddress(static_cast<std::uint8_t>(chance.between(0, 16)));
            ledger().ambiguousAddresses = true;
            log("reboot");
        }
    }

    // Nothing goes wrong from here on; what was under way comes to its end.
    void calm() {
        workshop.weather.clear();
        for (std::size_t position = 0; position < boards; ++position)
            line->unmute(position);
        log("quiet");
        time.advance(quietTime);
        for (int attempts = 0; !model->status.value().isOnline() && attempts < 3; ++attempts) {
            // A working status ends by itself, in addressing after two minutes at the latest.
            if (model->status.value().isWorking()) time.advance(3min);
            if (!model->status.value().isOnline()) perform("connect", model->connect());
        }
        require(model->status.value().isOnline(),
                "not online on a quiet line: " + model->status.value().text);
        const TimePoint limit = time.now() + longestHealing;
        time.runUntil([&] { return isSettled() || time.now() > limit; });
        require(isSettled(), "edits, a reading or an operation is under way after so long a quiet");
        time.advance(1s);
        const auto open = cable.lock();
        require(open && time.now() - open->lastWrite() < 1s, "the meters are not read");
        checkViolations();
    }

    bool isSettled() const {
        return !model->isSending() && !model->activity.value() && !model->progress.value() &&
               model->status.value().isOnline() &&
               std::ranges::all_of(model->speakers.value(), [this](const auto& speaker) {
                   return !speaker->firstMissing() || !boardAt(*speaker);
               });
    }

    // The only board at that address; null if there is none or several.
    const Simulator::Board* boardAt(const Speaker& speaker) const {
        const Simulator::Board* only = nullptr;
        for (std::size_t position = 0; position < boards; ++position) {
            const Simulator::Board& board = line->board(position);
            if (board.address() != speaker.address) continue;
            if (only) return nullptr;
            only = &board;
        }
        return only && only->info().serial == speaker.info.value().serial ? only : nullptr;
    }

    void check() {
        ++ledger().checks;
        for (const auto& speaker : model->speakers.value()) {
            const Simulator::Board* const board = boardAt(*speaker);
            if (!board) {
                require(ledger().ambiguousAddresses || toldAddressing,
                        "speaker " + twoDigits(speaker->address) + " is another board than listed");
                continue;
            }
            for (const auto& [module, value] : speaker->values.value())
                if (value.encoded() != board->stored(module))
                    explain({speaker->address, module}, value, board->value(module));
        }
    }

    void explain(Key key, const ModuleValue& shown, const ModuleValue& held) {
        if (ledger().toldKeys.contains(key) || ledger().toldSpeakers.contains(key.first)) {
            ++ledger().told;
        } else if (ledger().ambiguousKeys.contains(key) || ledger().ambiguousSpeakers.contains(key.first) ||
                   ledger().ambiguousAddresses) {
            ++ledger().ambiguous;
        } else {
            ++ledger().unaccounted;
            throw Violation{"speaker " + twoDigits(key.first) + " holds " + fieldsText(held) + " of " +
                            labelOf(K7Q::module(key.second).value()) + ", the window shows " +
                            fieldsText(shown)};
        }
    }

    bool isChainWhole() const {
        std::vector<std::uint8_t> addresses;
        for (std::size_t position = 0; position < boards; ++position)
            addresses.push_back(line->board(position).address());
        std::ranges::sort(addresses);
        return addresses.front() > 0 && addresses.back() <= 16 &&
               std::ranges::adjacent_find(addresses) == addresses.end();
    }

    // On a quiet line one discovery makes everything right, also an addressing that has gone wrong.
    void repair() {
        if (isChainWhole() && model->speakers.value().size() == boards && !ledger().ambiguousAddresses &&
            chance.happens(0.5)) {
            model->target = std::nullopt;
            perform("read again", model->readAgain());
        } else {
            const bool renumber = !isChainWhole();
            perform(renumber ? "discover and address" : "discover", model->discover(renumber));
        }
        ledger().forgetExplanations();
        toldAddressing = false;
        const TimePoint limit = time.now() + longestHealing;
        time.runUntil([&] { return isSettled() || time.now() > limit; });
        require(isSettled(), "a discovery on a quiet line does not settle");
        require(model->speakers.value().size() == boards, "a discovery on a quiet line finds " +
                                                              std::to_string(model->speakers.value().size()) +
                                                              " of " + std::to_string(boards));
        check();
    }

    // Without a link, nothing is left of it.
    void end() {
        perform("leave", model->leave());
        require(model->status.value() == Status::offline(), "not offline after leaving");
        time.advance(1min);
        require(time.waiting() == 0, "tasks that do not end without a link");
        require(cable.expired() && workshop.holders == 0, "the cable is not released");
        // The line does not know what the cable adds; the cable watches the order of the requests.
        for (const std::string& fault : line->summary().faults)
            require(fault.starts_with("a request before"), fault);
        line = nullptr;
        watchMemory();
    }

    void watchMemory() {
        const std::size_t used = ::mallinfo2().uordblks;
        if (outcome.chains <= chainsBeforeBaseline)
            baseline = std::max(baseline, used);
        else
            require(used <= baseline + allowedGrowth, "memory grows: " + std::to_string(used) + " bytes, " +
                                                          std::to_string(baseline) + " at the beginning");
    }

    // What a notice says is explained.
    void heard(const std::string& event) {
        log("event: " + event);
        const auto address = static_cast<std::uint8_t>(numberIn(event));
        if (event.ends_with("não confirmou o ajuste")) {
            ++ledger().noticed;
            if (const auto open = cable.lock())
                ledger().toldKeys.insert({address, open->lastWritten(address)});
        } else if (event.find("não carregou o preset") != event.npos) {
            ledger().toldSpeakers.insert(address);
        } else if (event.find("enviado") != event.npos) {
            ledger().noticed += numberIn(event);
        } else if (event.starts_with("O endereçamento não pôde") || event.starts_with("Nenhuma caixa")) {
            toldAddressing = true;
        }
    }

    const Options& options;
    Chance chance;
    const std::chrono::steady_clock::time_point began;
    Simulator::VirtualTime time;
    Result outcome;
    std::optional<std::string> broken;  // a violation that was seen where none can be thrown
    Workshop workshop{
        .time = time,
        .chance = chance,
        .ledger = outcome.ledger,
        .weather = {},
        .turnaround = {},
        .isPaced = false,
        .log = options.log ? [this](const std::string& text) { log(text); }
                           : std::function<void(const std::string&)>(),
        .violated =
            [this](const std::string& what) {
                log("violated: " + what);
                if (!broken) broken = what;
            },
    };
    std::shared_ptr<Simulator::Line> line;
    std::weak_ptr<FaultyCable> cable;  // the latest one
    std::size_t boards = 0;
    std::size_t baseline = 0;  // bytes
    bool toldAddressing = false;
    std::shared_ptr<AppModel> model = std::make_shared<AppModel>(Surroundings{
        .executor = time.executor(),
        .serialPorts = [] { return std::vector<std::string>{"/dev/ttyUSB0"}; },
        .extraPort = "",
        .serial = [this](const std::string& path) { return newCable(path); },
        .bridge = [this](const std::string& host, std::uint16_t) { return newCable(host); },
    });
    std::shared_ptr<Watcher> events = watch([this] { return model->events.count.value(); },
                                            [this](std::uint64_t count) {
                                                if (count > 0) heard(model->events.all().back().text);
                                            });
    std::shared_ptr<Watcher> states = watch([this] { return model->status.value().text; },
                                            [this](const std::string& text) { log("status: " + text); });
};

}  // namespace

Result run(const Options& options) { return Run(options).result(); }

}  // namespace Soak
