#include "ui/pages/shared/controls.hpp"

namespace Corvane {

using namespace Wendril;

Kit::Range rangeOf(const Limits& limits) { return {limits.lowest, limits.highest}; }

Kit::Knob* knobFor(const Limits& limits, const QString& title, const Kit::ValueControl::Format& format,
                   const Kit::Knob::Look& look, QWidget* parent) {
    return new Kit::Knob(title, rangeOf(limits), limits.standard, limits.step, format, look, parent);
}

Kit::Fader* faderFor(const Limits& limits, const QString& title, const Kit::ValueControl::Format& format,
                     const Kit::Fader::Look& look, QWidget* parent) {
    return new Kit::Fader(title, rangeOf(limits), limits.standard, format, look, parent);
}

Kit::Knob::Look labelledKnob(double size, const Limits& limits) {
    const char* const format = limits.unit == "dB" ? "%+g" : "%g";
    return {.size = size,
            .minLabel = QString::asprintf(format, limits.lowest),
            .maxLabel = QString::asprintf(format, limits.highest)};
}

}  // namespace Corvane
