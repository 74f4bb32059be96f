#pragma once

#include "ui/pages/shared/bind.hpp"

#include "ui/kit/timeknob.hpp"

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

/// A knob that shows and edits one time of a setting.
template <class Setting, class Value>
Kit::TimeKnob* timeKnobFor(const QString& title, double size, const Setting& setting,
                           std::uint32_t Value::*field, QWidget* parent) {
    const auto set = [setting, field](std::uint32_t ms) {
        setting.edit([field, ms](Value& value) { value.*field = ms; });
    };
    auto* const knob = Kit::timeKnob(title, setting.value().*field, size, set, parent);
    Corvane::bind(
        static_cast<QObject&>(*knob), [setting, field] { return setting.value().*field; },
        [knob](std::uint32_t ms) { knob->setTime(ms); });
    return knob;
}

}  // namespace Corvane
