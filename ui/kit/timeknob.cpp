#include "ui/kit/timeknob.hpp"

#include "ui/kit/formats.hpp"

#include "Wendril/profile.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Kit {

namespace {

using Wendril::K7Q::timeSteps;

constexpr std::uint32_t defaultTime = 45;  // ms
constexpr auto lastPosition = static_cast<double>(timeSteps.size() - 1);

double positionOf(std::uint32_t ms) {
    const auto* const found = std::ranges::find(timeSteps, Wendril::K7Q::nearestTime(ms));
    return static_cast<double>(found - timeSteps.begin());
}

std::uint32_t timeAt(double position) {
    return timeSteps.at(static_cast<std::size_t>(std::clamp(std::round(position), 0.0, lastPosition)));
}

}  // namespace

TimeKnob::TimeKnob(const QString& title, double size, Set set, QWidget* parent)
    : Knob(
          title, {0, lastPosition}, positionOf(defaultTime), 1,
          [](double position) { return Formats::time(timeAt(position)); }, {.size = size}, parent) {
    onChange = [set = std::move(set)](double position) { set(timeAt(position)); };
}

void TimeKnob::setTime(std::uint32_t ms) { setValue(positionOf(ms)); }

double TimeKnob::shownNumber(double position) const { return timeAt(position); }

double TimeKnob::fromShown(double ms) const {
    return positionOf(static_cast<std::uint32_t>(std::lround(std::clamp<double>(ms, 0, timeSteps.back()))));
}

TimeKnob* timeKnob(const QString& title, std::uint32_t value, double size, TimeKnob::Set set,
                   QWidget* parent) {
    auto* const knob = new TimeKnob(title, size, std::move(set), parent);
    knob->setTime(value);
    return knob;
}

}  // namespace Kit
