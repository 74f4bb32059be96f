#pragma once

#include "ui/pages/shared/bind.hpp"

#include "ui/kit/knob.hpp"

#include <cmath>
#include <concepts>
#include <cstdint>

namespace Corvane {

/// The control shows and edits one field of a setting: of a ModuleSetting, or of anything that has
/// its `value` and `edit`.
template <class Setting, class Value, class Number>
void bindField(Kit::ValueControl& control, const Setting& setting, Number Value::*field) {
    Corvane::bind(
        control, [setting, field] { return setting.value().*field; },
        [setting, field](double number) {
            if constexpr (std::integral<Number>) number = std::round(number);
            setting.edit([field, number](Value& value) { value.*field = static_cast<Number>(number); });
        });
}

template <class Setting, class Value>
void bindField(Kit::TimeKnob& knob, const Setting& setting, std::uint32_t Value::*field) {
    Corvane::bind(
        knob, [setting, field] { return Kit::TimeKnob::positionOf(setting.value().*field); },
        [setting, field](double position) {
            setting.edit([field, position](Value& value) { value.*field = Kit::TimeKnob::timeOf(position); });
        });
}

}  // namespace Corvane
