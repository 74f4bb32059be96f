#pragma once

#include "ui/kit/meterbar.hpp"
#include "ui/kit/panel.hpp"

#include <vector>

namespace Kit {

/// The levels of the outputs side by side, with the highest as a number.
class OutputMeters final : public QWidget {
public:
    /// `height` of the field of bars, for that many outputs.
    OutputMeters(int outputs, int height, QWidget* parent);

    void setLevels(const std::vector<float>& levels);

private:
    std::vector<MeterBar*> bars;
    Caption* peak;
};

}  // namespace Kit
