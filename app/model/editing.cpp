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

void AppModel::set(std::uint8_t module, const ModuleValue& value) {
    for (const auto& speaker : targeted()) {
        ModuleValues values = speaker->values.value();
        values.insert_or_assign(module, value);
        speaker->values = std::move(values);
        const WriteKey key{speaker->address, module};
        if (pending.insert_or_assign(key, value).second) order.push_back(key);
    }
}

void AppModel::dropEdits() {
    order.clear();
    pending.clear();
}

// The focused speaker's setting with the change goes to all targeted ones, whole.
template <class Case>
void AppModel::edit(ModuleKind kind, const std::vector<std::string_view>& channels,
                    const std::function<void(Case&)>& change) {
    for (const std::string_view channel : channels) {
        auto current = valueAs<Case>(kind, channel);
        if (!current) continue;
        change(*current);
        set(K7Q::index(kind, channel, 0), ModuleValue{*current});
    }
}

void AppModel::editCompressor(const CompressorChange& change) {
    edit(ModuleKind::compressor, outputs(), change);
}

void AppModel::editLimiter(const LimiterChange& change) { edit(ModuleKind::limiter, outputs(), change); }

void AppModel::setVolume(double db) {
    edit<GainValue>(ModuleKind::gain, inputs, [db](GainValue& gain) { gain.db = static_cast<float>(db); });
}

// Input 0 decides for both.
void AppModel::toggleMute() {
    const auto first = valueAs<GainValue>(ModuleKind::gain, inputs.front());
    const bool muted = first && first->mute;
    edit<GainValue>(ModuleKind::gain, inputs, [muted](GainValue& gain) { gain.mute = !muted; });
}

}  // namespace Corvane
