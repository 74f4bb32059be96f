#pragma once

#include "app/model/appmodel.hpp"

#include "ui/pages/shared/pageview.hpp"

namespace Corvane {

/// Tone and volume of the inputs, and the levels of all channels.
class ToneView final : public PageView {
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
    QWidget* inputMute = nullptr;
};

}  // namespace Corvane
