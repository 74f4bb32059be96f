#include "app/model/appmodel.hpp"
#include "app/model/outcome.hpp"

#include "Wendril/text.hpp"

#include <algorithm>
#include <chrono>
#include <utility>

namespace Corvane {

using namespace Wendril;

namespace {

constexpr int firstSlot = 1;
constexpr int lastSlot = 31;

std::uint32_t onTheWire(int slot) { return static_cast<std::uint32_t>(slot); }

// The speaker is shown as the preset has set it.
Task<void> recall(K7QClient client, std::shared_ptr<Speaker> speaker, int number) {
    const ModuleValues before = speaker->values.value();
    auto loading = client.loadPreset(speaker->address, onTheWire(number));
    co_await std::move(loading);
    auto reading = client.readAll(speaker->address, nullptr);
    auto values = co_await std::move(reading);
    speaker->take(std::move(values), before);
}

}  // namespace

Task<void> AppModel::refreshPresets() { return refreshPresets(weak_from_this()); }

Task<void> AppModel::loadPreset(int number) { return loadPreset(weak_from_this(), number); }

Task<void> AppModel::savePreset(int number, std::string name) {
    return savePreset(weak_from_this(), number, std::move(name));
}

Task<void> AppModel::deletePreset(int number) { return deletePreset(weak_from_this(), number); }

std::shared_ptr<AppModel> AppModel::ifStill(const Weak& weak, const K7QClient& client) {
    auto self = weak.lock();
    return self && self->client && self->client->bus == client.bus ? self : nullptr;
}

// The latest listing rules: the focus may have moved to another speaker meanwhile.
Task<void> AppModel::refreshPresets(Weak weak) {
    auto self = weak.lock();
    if (!self || !self->client) co_return;
    const auto speaker = self->focus();
    if (!speaker) co_return;
    const K7QClient client = *self->client;
    const std::uint64_t listing = ++self->listings;
    self.reset();

    auto asking = outcomeOf(client.presetInfo(speaker->address));
    const auto info = co_await std::move(asking);
    if (!info) co_return;
    const K7QClient::PresetInfo stored = *info.value;
    std::map<int, std::string> names;
    for (int slot = firstSlot; slot <= lastSlot; ++slot) {
        if (!stored.isStored(slot)) continue;
        self = ifStill(weak, client);
        if (!self || self->listings != listing) co_return;
        self.reset();
        auto naming = outcomeOf(client.presetName(speaker->address, onTheWire(slot)));
        auto name = co_await std::move(naming);
        names.emplace(slot, name ? *std::move(name.value) : "Preset " + std::to_string(slot));
    }
    self = ifStill(weak, client);
    if (!self || self->listings != listing) co_return;
    self->devicePresets = std::move(names);
    constexpr std::uint32_t largest = std::numeric_limits<int>::max();
    self->currentPreset = static_cast<int>(std::min(stored.current, largest));
}

// Gives the command to each targeted speaker, also after one that failed. False when the link has
// gone meanwhile. Without a complaint nobody is told of a failure.
Task<bool> AppModel::askTargeted(Weak weak, Command command, std::string complaint) {
    auto self = weak.lock();
    if (!self || !self->client) co_return false;
    const K7QClient client = *self->client;
    const Speakers speakers = self->targeted();
    self.reset();
    for (const auto& speaker : speakers) {
        auto asking = outcomeOf(command(client, speaker));
        const auto answered = co_await std::move(asking);
        self = ifStill(weak, client);
        if (!self) co_return false;
        if (!answered && !complaint.empty())
            self->notice = "A caixa " + twoDigits(speaker->address) + " " + complaint;
        self.reset();
    }
    co_return true;
}

// Edits that still wait for their turn go first: a preset is stored as the screen shows it, and
// loaded over what has been edited before.
Task<bool> AppModel::editsSent(Weak weak) {
    constexpr auto pollPause = std::chrono::milliseconds(10);
    auto self = weak.lock();
    if (!self || !self->client) co_return false;
    const K7QClient client = *self->client;
    while (!self->pending.empty() && self->loop) {
        self.reset();
        auto pause = sleepFor(pollPause);
        co_await std::move(pause);
        self = ifStill(weak, client);
        if (!self) co_return false;
    }
    co_return true;
}

Task<void> AppModel::loadPreset(Weak weak, int number) {
    auto sending = editsSent(weak);
    const bool sent = co_await std::move(sending);
    if (!sent) co_return;
    auto loading = askTargeted(
        weak,
        [number](K7QClient client, std::shared_ptr<Speaker> speaker) {
            return recall(std::move(client), std::move(speaker), number);
        },
        "não carregou o preset " + std::to_string(number));
    const bool done = co_await std::move(loading);
    if (const auto self = weak.lock(); done && self) self->currentPreset = number;
}

Task<void> AppModel::savePreset(Weak weak, int number, std::string name) {
    auto sending = editsSent(weak);
    const bool sent = co_await std::move(sending);
    if (!sent) co_return;
    auto saving = askTargeted(
        weak,
        [number, name = std::move(name)](const K7QClient& client, const std::shared_ptr<Speaker>& speaker) {
            return client.savePreset(speaker->address, onTheWire(number), name);
        },
        "não salvou o preset " + std::to_string(number));
    const bool done = co_await std::move(saving);
    if (!done) co_return;
    auto listing = refreshPresets(weak);
    co_await std::move(listing);
}

Task<void> AppModel::deletePreset(Weak weak, int number) {
    auto deleting = askTargeted(
        weak,
        [number](const K7QClient& client, const std::shared_ptr<Speaker>& speaker) {
            return client.deletePreset(speaker->address, onTheWire(number));
        },
        "");
    const bool done = co_await std::move(deleting);
    if (!done) co_return;
    auto listing = refreshPresets(weak);
    co_await std::move(listing);
}

}  // namespace Corvane
