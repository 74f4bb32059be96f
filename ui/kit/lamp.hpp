#pragma once

#include "ui/kit/button.hpp"

namespace Kit {

constexpr double lampSize = 8;
constexpr double lampGlow = 6;  // how far the glow extends beyond the lamp

/// A lamp in the middle of `bounds`.
void drawLamp(QPainter& painter, const QRectF& bounds, const QColor& color, bool on);

/// A ring of that colour: something is there, but not all of it.
void drawHollowLamp(QPainter& painter, const QRectF& bounds, const QColor& color);

/// A square button with a lamp. A click does not toggle the lamp: the owner does, with `setOn`.
class LampSwitch final : public Button {
public:
    LampSwitch(const QString& name, QWidget* parent);

    void setOn(bool value);
    bool isChecked() const override { return on; }

protected:
    void paint(QPainter& painter) override;

private:
    bool on = false;
};

}  // namespace Kit
