#include "simulator/soak/user.hpp"

#include "Wendril/limits.hpp"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace Soak {

using namespace Corvane;
using namespace Wendril;

namespace {

std::string_view anyInput(Chance& chance) { return K7Q::inputs[chance.below(K7Q::inputs.size())]; }
std::string_view anyOutput(Chance& chance) { return K7Q::outputs[chance.below(K7Q::outputs.size())]; }

void chooseSpeaker(AppModel& model, Chance& chance) {
    const auto& speakers = model.speakers.value();
    if (speakers.empty() || chance.happens(0.4))
        model.target = std::nullopt;
    else
        model.target = chance.oneOf(speakers)->address;
}

void chooseOutput(AppModel& model, Chance& chance) {
    const int output = chance.between(-1, 3);
    model.output = output < 0 ? std::nullopt : std::optional(output);
}

void moveBand(AppModel& model, Chance& chance) {
    const std::string_view channel = chance.happens(0.5) ? anyInput(chance) : anyOutput(chance);
    const auto band = chance.below(static_cast<std::size_t>(AppModel::bandsOf(channel)));
    auto value = model.valueOrDefault<PeqValue>(ModuleKind::peq, channel, static_cast<int>(band));
    value.gain = static_cast<float>(chance.between(-12, 12));
    value.fc = static_cast<std::uint32_t>(chance.between(20, 22000));
    model.set(K7Q::index(ModuleKind::peq, channel, static_cast<int>(band)), ModuleValue{value});
}

void moveDelay(AppModel& model, Chance& chance) {
    const std::string_view output = anyOutput(chance);
    auto value = model.valueOrDefault<DelayValue>(ModuleKind::delay, output);
    value.ms = static_cast<float>(chance.between(0, 20));
    model.set(K7Q::index(ModuleKind::delay, output, 0), ModuleValue{value});
}

int anySlot(Chance& chance) { return chance.between(firstPresetSlot, firstPresetSlot + 3); }

struct Gesture {
    const char* name;
    std::size_t weight;
    void (*act)(AppModel& model, Chance& chance);
};

constexpr Gesture gestures[] = {
    {"choose a speaker", 8, chooseSpeaker},
    {"choose an output", 4, chooseOutput},
    {"volume", 30, [](AppModel& model, Chance& chance) { model.setVolume(chance.between(-60, 6)); }},
    {"band", 20, moveBand},
    {"delay", 8, moveDelay},
    {"tone", 10,
     [](AppModel& model, Chance& chance) {
         model.setTone(toneBands[chance.below(std::size(toneBands))], chance.between(-12, 12));
     }},
    {"compressor", 8,
     [](AppModel& model, Chance& chance) {
         model.editCompressor(
             [&](DynamicsValue& value) { value.threshold = static_cast<float>(chance.between(-20, 22)); });
     }},
    {"limiter", 8,
     [](AppModel& model, Chance& chance) {
         model.editLimiter(
             [&](LimiterValue& value) { value.threshold = static_cast<float>(chance.between(-20, 22)); });
     }},
    {"route", 5,
     [](AppModel& model, Chance& chance) {
         model.setRoute(anyInput(chance), anyOutput(chance), chance.happens(0.5));
     }},
    {"mute", 5, [](AppModel& model, Chance&) { model.toggleMute(); }},
    {"mute the outputs", 3, [](AppModel& model, Chance&) { model.toggleOutputMute(); }},
    {"bypass the equaliser", 2,
     [](AppModel& model, Chance& chance) { model.setEqBypass(anyOutput(chance), chance.happens(0.5)); }},
    {"reset the equaliser", 2, [](AppModel& model, Chance& chance) { model.resetEq(anyInput(chance)); }},
    {"undo", 8, [](AppModel& model, Chance&) { model.undo(); }},
    {"redo", 4, [](AppModel& model, Chance&) { model.redo(); }},
    {"list the presets", 3, [](AppModel& model, Chance&) { model.start(model.refreshPresets()); }},
    {"load a preset", 4,
     [](AppModel& model, Chance& chance) { model.start(model.loadPreset(anySlot(chance))); }},
    {"save a preset", 4,
     [](AppModel& model, Chance& chance) { model.start(model.savePreset(anySlot(chance), "Show")); }},
    {"delete a preset", 2,
     [](AppModel& model, Chance& chance) { model.start(model.deletePreset(anySlot(chance))); }},
    {"read again", 3, [](AppModel& model, Chance&) { model.start(model.readAgain()); }},
    {"discover", 2, [](AppModel& model, Chance&) { model.start(model.discover(false)); }},
    {"discover and address", 1, [](AppModel& model, Chance&) { model.start(model.discover(true)); }},
    {"connect", 2, [](AppModel& model, Chance&) { model.start(model.connect()); }},
    {"disconnect", 1, [](AppModel& model, Chance&) { model.start(model.disconnect()); }},
    {"leave", 1, [](AppModel& model, Chance&) { model.start(model.leave()); }},
};

const Gesture& anyGesture(Chance& chance) {
    std::size_t all = 0;
    for (const Gesture& each : gestures)
        all += each.weight;
    std::size_t drawn = chance.below(all);
    const Gesture* chosen = gestures;
    while (drawn >= chosen->weight)
        drawn -= chosen++->weight;
    return *chosen;
}

}  // namespace

std::string gesture(AppModel& model, Chance& chance) {
    const Gesture& chosen = anyGesture(chance);
    chosen.act(model, chance);
    return chosen.name;
}

}  // namespace Soak
