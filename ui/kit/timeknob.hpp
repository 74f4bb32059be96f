#pragma once

#include "ui/kit/knob.hpp"

#include <cstdint>
#include <functional>

namespace Kit {

/// A knob over the times that the board accepts. Its value is a position in the table of these times.
class TimeKnob final : public Knob {
public:
    using Set = std::function<void(std::uint32_t ms)>;

    /// Shows the time of the table that is nearest to `ms`.
    void setTime(std::uint32_t ms);

    // In ms.
    double shownNumber(double position) const override;
    double fromShown(double ms) const override;

private:
    friend TimeKnob* timeKnob(const QString& title, std::uint32_t value, double size, Set set,
                              QWidget* parent);

    TimeKnob(const QString& title, double size, Set set, QWidget* parent);
};

/// A knob of that size that shows `value` and passes each new time to `set`, both in ms.
TimeKnob* timeKnob(const QString& title, std::uint32_t value, double size, TimeKnob::Set set,
                   QWidget* parent);

}  // namespace Kit
