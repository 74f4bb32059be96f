#pragma once

#include "app/model/appmodel.hpp"

#include <QScrollArea>

class QHBoxLayout;

namespace Corvane {

/// A chip for each speaker; that of the target is selected. When the row is too narrow, the chips elide the
/// model names, then show only addresses; beyond that the wheel scrolls the row.
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
