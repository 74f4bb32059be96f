#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/panel.hpp"

namespace Corvane {

/// Tone and volume of the inputs, and the levels of all channels.
class ToneView final : public Kit::Surface {
public:
    ToneView(AppModel& model, QWidget* parent);

private:
    QWidget* tonePanel();
    QLayout* meters();
    QLayout* knobs();
    QWidget* presets();
    QWidget* volumePanel();
    QWidget* inputColumn();
    QWidget* outputColumn();

    AppModel& model;
};

}  // namespace Corvane
