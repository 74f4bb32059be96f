#pragma once

#include "app/model/appmodel.hpp"

#include <QVariantAnimation>
#include <QWidget>

namespace Corvane {

/// Says for two seconds, at the foot of its parent, what has been undone, redone or done with a preset.
/// It takes no input.
class ReportLine final : public QWidget {
public:
    ReportLine(AppModel& model, QWidget* parent);

    /// Moves to the foot of the parent.
    void settle();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void say(const QString& text);

    QString text;
    QVariantAnimation opacity{this};
};

}  // namespace Corvane
