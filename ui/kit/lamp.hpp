#pragma once

#include "ui/kit/control.hpp"

namespace Kit {

constexpr double lampSize = 8;
constexpr double lampGlow = 6;  // how far its light reaches beyond it

/// A small light in the middle of `bounds`.
void drawLamp(QPainter& painter, const QRectF& bounds, const QColor& color, bool on);

/// A square button with a lamp. It shows its owner's state and does not toggle by itself.
class LampSwitch final : public Button {
public:
    LampSwitch(const QString& name, QWidget* parent);

    void setOn(bool value);
    QAccessible::Role accessibleRole() const override { return QAccessible::CheckBox; }
    bool isCheckable() const override { return true; }
    bool isChecked() const override { return on; }

protected:
    void paint(QPainter& painter) override;

private:
    bool on = false;
};

}  // namespace Kit
