#pragma once

#include "ui/kit/valuecontrol.hpp"

namespace Kit {

/// A number that is dragged or typed. Drags to the right and up increase it: by one step every 4
/// points, or on a logarithmic field by one octave every 90, and by a fifth of that with Option or
/// Shift held. A double-click, Return or F2 starts editing with the value. While a number is typed, Tab
/// commits it and edits the next field.
class ScrubField final : public ValueControl {
public:
    struct Look {
        double step = 0;
        bool logarithmic = false;
        int width = 56;
    };

    ScrubField(const QString& name, Range range, Format format, const Look& look, QWidget* parent);

    /// Starts editing with the value.
    void editValue();

    void moveBySteps(double steps) override;
    QAccessible::Role accessibleRole() const override { return QAccessible::SpinBox; }

protected:
    double dragged(double start, QPointF translation, Qt::KeyboardModifiers modifiers) const override;
    double dragThreshold() const override { return 2; }
    double fineArrow() const override;
    void paint(QPainter& painter) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    QString typedText(double value) const override;
    void leaveEditor(bool forward) override;

private:
    const bool logarithmic;
};

}  // namespace Kit
