#include "app/model/appmodel.hpp"

#include "app/model/words.hpp"

#include "Wendril/limits.hpp"
#include "Wendril/text.hpp"

#include <algorithm>
#include <chrono>
#include <limits>
#include <utility>

namespace Corvane {

using namespace Wendril;

namespace {

constexpr auto pollPause = std::chrono::milliseconds(10);

std::uint32_t onTheWire(int slot) { return static_cast<std::uint32_t>(slot); }

// Loads a preset, then reads what the speaker holds. Returns what has changed.
Task<History::Changes> recall(K7QClient client, std::shared_ptr<Speaker> speaker, std::uint64_t reading,
                              int number) {
    co_await client.loadPreset(speaker->address, onTheWire(number));
    auto values = co_await client.readAll(speaker->address, nullptr);
    History::Changes changes;
    for (const auto& [index, before] : speaker->take(std::move(values), reading))
        changes.emplace(WriteKey{speaker->address, index},
                        History::Change{speaker, before, speaker->values.value().at(index)});
    co_return changes;
}

Task<History::Changes> save(K7QClient client, std::shared_ptr<Speaker> speaker, int number,
                            std::string name) {
    co_await client.savePreset(speaker->address, onTheWire(number), std::move(name));
    co_return History::Changes();
}

Task<History::Changes> erase(K7QClient client, std::shared_ptr<Speaker> speaker, int number) {
    co_await client.deletePreset(speaker->address, onTheWire(number));
    co_return History::Changes();
}

}  // namespace

Task<void> AppModel::refreshPresets() {
    return operation([this] { return refreshPresetsSteps(); });
}

Task<void> AppModel::loadPreset(int number) {
    return operation([this, number] { return loadPresetSteps(number); });
}

Task<void> AppModel::savePreset(int number, std::string name) {
    return operation([this, number, name = std::move(name)] { return savePresetSteps(number, name); });
}

Task<void> AppModel::deletePreset(int number) {
    return operation([this, number] { return deletePresetSteps(number); });
}

// A later listing overrules this one: the focus may be on another speaker by then.
Task<void> AppModel::refreshPresetsSteps() {
    const auto speaker = focus();
    if (!link.client || !speaker) co_return;
    const K7QClient client = *link.client;
    const Generation listing = link.listings.next();
    const auto info = co_await during(listing, client.presetInfo(speaker->address));
    if (!info) co_return;
    std::map<int, std::string> names;
    for (int slot = firstPresetSlot; slot <= lastPresetSlot; ++slot) {
        if (!info.value->isStored(slot)) continue;
        const auto name = co_await during(listing, client.presetName(speaker->address, onTheWire(slot)));
        names.emplace(slot, name ? *name.value : "Preset " + std::to_string(slot));
    }
    devicePresets = std::move(names);
    constexpr std::uint32_t largest = std::numeric_limits<int>::max();
    currentPreset = static_cast<int>(std::min(info.value->current, largest));
}

// Gives the command to each targeted speaker, also after one that failed. Says what is being done, and
// at the end what has been done.
Task<void> AppModel::runPreset(PresetRun run, Command command) {
    const K7QClient client = *link.client;
    const Generation generation = link.discoveries.latest();
    const std::string preset = "o preset " + std::to_string(run.number);
    const Speakers asked = targeted();
    const std::uint64_t id = ++presetRuns;
    std::vector<std::uint8_t> done;
    for (const auto& speaker : asked) {
        activity = run.doing + " " + preset + " na caixa " + twoDigits(speaker->address) + "…";
        auto answered = co_await during(generation, command(client, speaker));
        if (answered) {
            done.push_back(speaker->address);
            history.addRecall(run.number, id, *std::move(answered.value));
        } else if (!run.failed.empty()) {
            warn(speaker->address, run.failed + " " + preset);
        }
    }
    activity = std::nullopt;
    std::string text = "Preset " + std::to_string(run.number) + " " + run.done +
                       (done.size() == 1 ? " na " : " em ") + wordFor(done);
    if (done.size() < asked.size()) text += " de " + std::to_string(asked.size());
    events.add(text);
    tell(std::move(text));
}

// Waits until the live loop has sent the edits. No loop comes to send them while the status is an error.
Task<void> AppModel::editsSent(Duration longest) {
    const Generation generation = link.generation();
    const TimePoint end = timeAfter(surroundings.executor->now(), longest);
    const auto isWaiting = [this, end] {
        return isSending() && (status.value().isOnline() || status.value().isWorking()) &&
               surroundings.executor->now() < end;
    };
    while (isWaiting())
        co_await during(generation, sleepFor(pollPause));
}

// Waits for the end of a discovery, which may give other speakers the addresses, and for the edits: a
// preset is stored as the window shows it, and loaded over earlier edits. Returns whether the speakers
// can be reached then. A discovery that begins meanwhile ends the operation.
Task<bool> AppModel::readyForPreset() {
    const Generation discovery = link.discoveries.latest();
    while (status.value().isWorking() || (status.value().isOnline() && isSending()))
        co_await during(discovery, sleepFor(pollPause));
    if (!status.value().isOnline()) activity = std::nullopt;
    co_return status.value().isOnline();
}

Task<void> AppModel::loadPresetSteps(int number) {
    if (!link.client || activity.value()) co_return;
    activity = "Carregando o preset " + std::to_string(number) + "…";
    const Command command = [this, number](K7QClient client, std::shared_ptr<Speaker> speaker) {
        return recall(std::move(client), speaker, beginReading(*speaker), number);
    };
    const bool isReady = co_await readyForPreset();
    if (!isReady) co_return;
    const PresetRun run{number, "Carregando", "carregado", "não carregou"};
    co_await runPreset(run, command);
    currentPreset = number;
}

Task<void> AppModel::savePresetSteps(int number, std::string name) {
    if (!link.client || activity.value()) co_return;
    activity = "Salvando o preset " + std::to_string(number) + "…";
    const Command command = [number, name](K7QClient client, std::shared_ptr<Speaker> speaker) {
        return save(std::move(client), std::move(speaker), number, name);
    };
    const bool isReady = co_await readyForPreset();
    if (!isReady) co_return;
    const PresetRun run{number, "Salvando", "salvo", "não salvou"};
    co_await runPreset(run, command);
    co_await refreshPresetsSteps();
}

Task<void> AppModel::deletePresetSteps(int number) {
    if (!link.client || activity.value()) co_return;
    activity = "Apagando o preset " + std::to_string(number) + "…";
    const bool isReady = co_await readyForPreset();
    if (!isReady) co_return;
    const Command command = [number](K7QClient client, std::shared_ptr<Speaker> speaker) {
        return erase(std::move(client), std::move(speaker), number);
    };
    const PresetRun run{number, "Apagando", "apagado", ""};
    co_await runPreset(run, command);
    co_await refreshPresetsSteps();
}

}  // namespace Corvane
