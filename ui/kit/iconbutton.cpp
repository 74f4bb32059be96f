#include "ui/kit/iconbutton.hpp"

#include "ui/kit/shadows.hpp"
#include "ui/kit/symbols.hpp"

#include <utility>

namespace Kit {

IconButton::IconButton(QString symbol, const QString& meaning, double iconSize, QWidget* parent)
    : Button(parent)
    , symbol(std::move(symbol))
    , iconSize(iconSize) {
    setAccessibleName(meaning);
    setToolTip(meaning);
    setFixedSize(static_cast<int>(iconSize) + 12, static_cast<int>(iconSize) + 12);
}

void IconButton::paint(QPainter& painter) {
    if (isHovered() || isPressed())
        Paint::fill(painter, Paint::snapped(painter, area()), 7, Theme::white(isPressed() ? 0.10 : 0.06));
    QRectF icon(0, 0, iconSize, iconSize);
    icon.moveCenter(area().center());
    Symbols::draw(painter, symbol, icon, isHovered() || isPressed() ? Theme::text : Theme::secondary);
}

}  // namespace Kit
