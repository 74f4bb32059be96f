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
    values.update([&](ModuleValues& all) {
        const auto [place, added] = all.try_emplace(index, value);
        if (added) return true;
        if (equal(place->second, value)) return false;
        before = std::exchange(place->second, value);
        return true;
    });
    return before;
}

std::vector<std::uint8_t> Speaker::take(ModuleValues read, const ModuleValues& before) {
    std::vector<std::uint8_t> changed;
    for (const auto& [index, value] : values.value()) {
        const auto old = before.find(index);
        if (old == before.end() || !equal(old->second, value))
            read.insert_or_assign(index, value);
        else if (const auto now = read.find(index); now != read.end() && !equal(now->second, value))
            changed.push_back(index);
    }
    values = std::move(read);
    return changed;
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
