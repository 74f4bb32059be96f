#pragma once

#include "Wendril/values.hpp"

#include <string>
#include <type_traits>
#include <utility>
#include <variant>

namespace Wendril {

/// Calls `visit(name, field)` for every field of a module's value in wire order, with the field by
/// reference: a float, bool, uint32 or, for a type or slope code, uint8.
template <class Value, class Visitor>
requires std::is_same_v<std::remove_const_t<Value>, ModuleValue>
void forEachField(Value& value, Visitor visit) {
    std::visit(
        [&visit](auto& v) {
            using Case = std::remove_cvref_t<decltype(v)>;
            if constexpr (std::is_same_v<Case, GainValue> || std::is_same_v<Case, MixerValue>) {
                visit("db", v.db);
                visit("mute", v.mute);
                visit("phaseNormal", v.phaseNormal);
            } else if constexpr (std::is_same_v<Case, PeqValue>) {
                visit("fc", v.fc);
                visit("gain", v.gain);
                visit("q", v.q);
                visit("type", v.type);
                visit("bypass", v.bypass);
            } else if constexpr (std::is_same_v<Case, FilterValue>) {
                visit("fc", v.fc);
                visit("type", v.type);
                visit("bypass", v.bypass);
            } else if constexpr (std::is_same_v<Case, DynamicsValue>) {
                visit("threshold", v.threshold);
                visit("ratio", v.ratio);
                visit("hold", v.hold);
                visit("attack", v.attack);
                visit("release", v.release);
                visit("knee", v.knee);
            } else if constexpr (std::is_same_v<Case, LimiterValue>) {
                visit("threshold", v.threshold);
                visit("ratio", v.ratio);
                visit("hold", v.hold);
                visit("release", v.release);
                visit("knee", v.knee);
            } else if constexpr (std::is_same_v<Case, DelayValue>) {
                visit("ms", v.ms);
                visit("bypass", v.bypass);
            } else {
                static_assert(std::is_same_v<Case, bool>);
                visit("bypass", v);
            }
        },
        value.value);
}

/// "db=-6 mute=0 phaseNormal=1": floats in the shortest form that reads back the same, whatever
/// the locale.
std::string fieldsText(const ModuleValue& value);

}  // namespace Wendril
