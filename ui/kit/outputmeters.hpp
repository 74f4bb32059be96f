#pragma once

#include "ui/kit/meterbar.hpp"
#include "ui/kit/panel.hpp"

#include <vector>

namespace Kit {

/// The levels of the outputs side by side, with the highest as a number.
class OutputMeters final : public QWidget {
public:
    /// `height` of the field of bars, at least, for that many outputs, two or more.
    OutputMeters(int outputs, int height, QWidget* parent);

    void setLevels(const std::vector<float>& levels);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    Well* field;
    std::vector<MeterBar*> bars;
    Caption* peak;
};

}  // namespace Kit
