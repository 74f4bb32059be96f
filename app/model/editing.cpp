#include "app/model/appmodel.hpp"

#include <utility>

namespace Corvane {

using namespace Wendril;

namespace {

const std::vector<std::string_view> inputs(K7Q::inputs.begin(), K7Q::inputs.end());

}  // namespace

std::optional<ModuleValue> AppModel::value(ModuleKind kind, std::string_view channel, int band) const {
    const std::uint8_t index = K7Q::index(kind, channel, band);
    if (const auto speaker = focus()) {
        const ModuleValues& values = speaker->values.value();
        if (const auto found = values.find(index); found != values.end()) return found->second;
    }
    return ModuleValue::factory(K7Q::module(index).value());
}

void AppModel::set(std::uint8_t index, const ModuleValue& value, const std::optional<Speakers>& on) {
    const History::Scope step(history);
    for (const auto& speaker : on ? *on : targeted())
        if (const auto before = write(*speaker, index, value))
            history.record(surroundings.executor->now(), speaker, index, *before, value);
}

std::optional<ModuleValue> AppModel::write(Speaker& speaker, std::uint8_t index, const ModuleValue& value) {
    edits.add({speaker.address, index}, value);
    return speaker.set(index, value);
}

std::uint64_t AppModel::beginReading(Speaker& speaker) const {
    std::vector<std::uint8_t> unsent;
    for (const WriteKey& key : edits.keys())
        if (key.address == speaker.address) unsent.push_back(key.index);
    return speaker.beginReading(unsent);
}

// A module is written whole, so the targeted speakers get the focused one's other fields too.
template <class Case>
void AppModel::edit(ModuleKind kind, const std::vector<std::string_view>& channels,
                    const std::function<void(Case&)>& change) {
    const History::Scope step(history);
    for (const std::string_view channel : channels) {
        auto current = valueAs<Case>(kind, channel);
        if (!current) continue;
        change(*current);
        set(K7Q::index(kind, channel, 0), ModuleValue{*current});
    }
}

void AppModel::editInputGain(const GainChange& change) { edit(ModuleKind::gain, inputs, change); }

void AppModel::editCompressor(const CompressorChange& change) {
    edit(ModuleKind::compressor, outputs(), change);
}

void AppModel::editLimiter(const LimiterChange& change) { edit(ModuleKind::limiter, outputs(), change); }

void AppModel::setVolume(double db) {
    editInputGain([db](GainValue& gain) { gain.db = static_cast<float>(db); });
}

// Both inputs get the same state, the opposite of that of input 0.
void AppModel::toggleMute() {
    const auto first = valueAs<GainValue>(ModuleKind::gain, inputs.front());
    const bool muted = first && first->mute;
    editInputGain([muted](GainValue& gain) { gain.mute = !muted; });
}

}  // namespace Corvane
