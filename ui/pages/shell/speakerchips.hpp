#pragma once

#include "app/model/appmodel.hpp"

#include <QScrollArea>

class QHBoxLayout;

namespace Corvane {

/// A chip for each speaker; the chosen one is lit. Where the row is too narrow for the models'
/// names they are elided, and where it is too narrow for the addresses the wheel scrolls it.
class SpeakerChips final : public QScrollArea {
public:
    SpeakerChips(AppModel& model, QWidget* parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void wheelEvent(QWheelEvent* event) override;

private:
    void show(const Speakers& speakers);

    AppModel& model;
    QHBoxLayout* row;
};

}  // namespace Corvane
