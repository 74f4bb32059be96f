#pragma once

#include "ui/kit/animation.hpp"
#include "ui/kit/caption.hpp"
#include "ui/kit/meterbars.hpp"
#include "ui/kit/well.hpp"

#include <vector>

namespace Kit {

/// The levels of the outputs as bars side by side under their title, with the highest as a number below. The
/// number changes at most five times a second, so that it can be read.
class OutputMeters final : public QWidget {
public:
    /// `outputs`: two or more. `height`: the least of the field of bars, which grows with its layout.
    OutputMeters(int outputs, int height, QWidget* parent);

    void setLevels(const std::vector<float>& levels);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void showPeak();

    Well* field;
    MeterBars* bars;
    Caption* readOut;
    Animation peak;  // in dB
};

}  // namespace Kit
