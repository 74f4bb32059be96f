#pragma once

#include "ui/kit/fader.hpp"
#include "ui/kit/knob.hpp"

#include "Wendril/limits.hpp"

#include <QString>

namespace Corvane {

/// Controls for the numbers of the board. Range, default and step are those of `limits`; a fader
/// has the step of all faders.
Kit::Knob* knobFor(const Wendril::Limits& limits, const QString& title,
                   const Kit::ValueControl::Format& format, const Kit::Knob::Look& look, QWidget* parent);
Kit::Fader* faderFor(const Wendril::Limits& limits, const QString& title,
                     const Kit::ValueControl::Format& format, const Kit::Fader::Look& look, QWidget* parent);

Kit::Range rangeOf(const Wendril::Limits& limits);

/// A knob whose range is written at both ends of its scale: "-20" and "+22" in dB, else "1" and "20".
Kit::Knob::Look labelledKnob(double size, const Wendril::Limits& limits);

}  // namespace Corvane
