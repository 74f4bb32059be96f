#include "ui/kit/caption.hpp"

#include "ui/kit/formats.hpp"
#include "ui/kit/text.hpp"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Kit {

Caption::Caption(QString text, const QFont& font, const QColor& color, QWidget* parent)
    : QWidget(parent)
    , text(std::move(text))
    , usualFont(font)
    , font(font)
    , color(color) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void Caption::setText(const QString& value) {
    if (text == value) return;
    const QSize before = sizeHint();
    text = value;
    if (sizeHint() != before) updateGeometry();
    update();
}

void Caption::setColor(const QColor& value) {
    color = value;
    update();
}

void Caption::reserveFor(const QString& value) {
    reserved = value;
    updateGeometry();
}

void Caption::setGrowth(double factor) {
    font = Theme::grown(usualFont, factor);
    updateGeometry();
    update();
}

QSize Caption::sizeHint() const {
    const Paint::TextStyle style{font, color, {}, tabular};
    const double width = std::max(Paint::textWidth(text, style), Paint::textWidth(reserved, style));
    return {static_cast<int>(std::ceil(width)) + 1,
            static_cast<int>(std::ceil(QFontMetricsF(font).height()))};
}

// Only the reserved width is guaranteed; longer texts are elided when the layout needs the room.
QSize Caption::minimumSizeHint() const {
    const Paint::TextStyle style{font, color, {}, tabular};
    return {static_cast<int>(std::ceil(Paint::textWidth(reserved, style))), sizeHint().height()};
}

void Caption::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool isShaded = color == Theme::secondary;
    const Paint::Shadow shadow = shadowed ? Paint::Shadow{Theme::black(0.5), 2, 1} : Paint::Shadow{};
    Paint::text(painter, rect(), alignment, text, {font, color, shadow, tabular, isShaded});
}

Percentage::Percentage(const QString& name, const QFont& font, const QColor& color, QWidget* parent)
    : Caption({}, font, color, parent) {
    setAccessibleName(name);
    setTabular(true);
    reserveFor(Formats::percent(1));
    hide();
}

void Percentage::setFraction(std::optional<double> value) {
    done = value;
    setText(done ? Formats::percent(*done) : QString());
    setVisible(done.has_value());
}

}  // namespace Kit
