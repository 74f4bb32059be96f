#include "app/model/speaker.hpp"

#include <utility>

namespace Corvane {

using namespace Wendril;

namespace {

// Compared as bytes on the wire, where a NaN equals itself.
bool equal(const ModuleValue& a, const ModuleValue& b) { return a.encoded() == b.encoded(); }

}  // namespace

void Speaker::set(std::uint8_t index, const ModuleValue& value) {
    values.update([&](ModuleValues& all) {
        const auto [place, added] = all.try_emplace(index, value);
        if (!added && equal(place->second, value)) return false;
        place->second = value;
        return true;
    });
}

void Speaker::take(ModuleValues read, const ModuleValues& before) {
    for (const auto& [index, value] : values.value()) {
        const auto old = before.find(index);
        if (old == before.end() || !equal(old->second, value)) read.insert_or_assign(index, value);
    }
    values = std::move(read);
}

}  // namespace Corvane
