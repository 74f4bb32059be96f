#include "app/model/speaker.hpp"

#include <algorithm>
#include <utility>

namespace Corvane {

using namespace Wendril;

namespace {

// Compared as bytes on the wire, where a NaN equals itself.
bool equal(const ModuleValue& a, const ModuleValue& b) { return a.encoded() == b.encoded(); }

}  // namespace

std::optional<ModuleValue> Speaker::set(std::uint8_t index, const ModuleValue& value) {
    std::optional<ModuleValue> before;
    edited[index] = ++edits;
    values.update([&](ModuleValues& all) {
        const auto [place, added] = all.try_emplace(index, value);
        if (added) return true;
        if (equal(place->second, value)) return false;
        before = std::exchange(place->second, value);
        return true;
    });
    return before;
}

std::uint64_t Speaker::beginReading(const std::vector<std::uint8_t>& unsent) {
    const std::uint64_t reading = edits;
    for (const std::uint8_t index : unsent)
        edited[index] = ++edits;
    return reading;
}

ModuleValues Speaker::take(ModuleValues read, std::uint64_t reading) {
    ModuleValues replaced;
    for (const auto& [index, value] : values.value()) {
        const auto edit = edited.find(index);
        if (edit != edited.end() && edit->second > reading)
            read.insert_or_assign(index, value);
        else if (const auto now = read.find(index); now != read.end() && !equal(now->second, value))
            replaced.emplace(index, value);
    }
    values = std::move(read);
    return replaced;
}

std::optional<ModuleRef> Speaker::firstMissing() const {
    const ModuleValues& known = values.value();
    if (known.size() == K7Q::meterIndex - 1) return std::nullopt;
    const auto& modules = K7Q::modules();
    const auto found = std::ranges::find_if(modules, [&known](const ModuleRef& module) {
        return module.kind != ModuleKind::vu && !known.contains(module.index);
    });
    return found == modules.end() ? std::nullopt : std::optional(*found);
}

bool Speaker::fill(std::uint8_t index, const ModuleValue& value) {
    values.update([&](ModuleValues& all) { return all.try_emplace(index, value).second; });
    return !firstMissing();
}

}  // namespace Corvane
