#include "app/model/appmodel.hpp"

#include "Wendril/limits.hpp"

#include <algorithm>
#include <chrono>
#include <limits>
#include <utility>

namespace Corvane {

using namespace Wendril;

namespace {

std::uint32_t onTheWire(int slot) { return static_cast<std::uint32_t>(slot); }

// Loads a preset, then reads what the speaker holds.
Task<void> recall(K7QClient client, std::shared_ptr<Speaker> speaker, int number) {
    const ModuleValues before = speaker->values.value();
    co_await client.loadPreset(speaker->address, onTheWire(number));
    auto values = co_await client.readAll(speaker->address, nullptr);
    speaker->take(std::move(values), before);
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

// Gives the command to each targeted speaker, also after one that failed. Without a complaint a
// failure is not reported.
Task<void> AppModel::askTargeted(Command command, std::string complaint) {
    const K7QClient client = *link.client;
    const Generation generation = link.generation();
    const Speakers asked = targeted();
    for (const auto& speaker : asked) {
        const auto answered = co_await during(generation, command(client, speaker));
        if (!answered && !complaint.empty()) warn(speaker->address, complaint);
    }
}

// Waits until the live loop has sent the edits: a preset is stored as the window shows it, and
// loaded over earlier edits. No loop comes to send them while the status is an error.
Task<void> AppModel::editsSent() {
    constexpr auto pollPause = std::chrono::milliseconds(10);
    const Generation generation = link.generation();
    while (!edits.isEmpty() && (status.value().isOnline() || status.value().isWorking()))
        co_await during(generation, sleepFor(pollPause));
}

Task<void> AppModel::loadPresetSteps(int number) {
    if (!link.client) co_return;
    const Command load = [number](K7QClient client, std::shared_ptr<Speaker> speaker) {
        return recall(std::move(client), std::move(speaker), number);
    };
    co_await editsSent();
    co_await askTargeted(load, "não carregou o preset " + std::to_string(number));
    currentPreset = number;
}

Task<void> AppModel::savePresetSteps(int number, std::string name) {
    if (!link.client) co_return;
    const Command save = [number, name](const K7QClient& client, const std::shared_ptr<Speaker>& speaker) {
        return client.savePreset(speaker->address, onTheWire(number), name);
    };
    co_await editsSent();
    co_await askTargeted(save, "não salvou o preset " + std::to_string(number));
    co_await refreshPresetsSteps();
}

Task<void> AppModel::deletePresetSteps(int number) {
    if (!link.client) co_return;
    const Command erase = [number](const K7QClient& client, const std::shared_ptr<Speaker>& speaker) {
        return client.deletePreset(speaker->address, onTheWire(number));
    };
    co_await askTargeted(erase, "");
    co_await refreshPresetsSteps();
}

}  // namespace Corvane
