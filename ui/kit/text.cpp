#include "ui/kit/text.hpp"

#include <QFontMetricsF>

#include <algorithm>
#include <cmath>

namespace Paint {

namespace {

// Each digit stands in the middle of a place that is `digitWidth` wide.
void drawCharacters(QPainter& painter, QPointF baseline, const QString& text, const QFont& font,
                    double digitWidth) {
    const QFontMetricsF metrics(font);
    double x = baseline.x();
    for (const QChar c : text) {
        const double own = metrics.horizontalAdvance(c);
        const double room = c.isDigit() ? digitWidth : own;
        painter.drawText(QPointF(x + (room - own) / 2, baseline.y()), QString(c));
        x += room;
    }
}

double widestDigit(const QFont& font) {
    const QFontMetricsF metrics(font);
    double widest = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit)
        widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
    return widest;
}

void drawLine(QPainter& painter, QPointF baseline, const QString& text, const TextStyle& style,
              const QColor& color) {
    painter.setFont(style.font);
    painter.setPen(color);
    if (style.tabularDigits)
        drawCharacters(painter, baseline, text, style.font, widestDigit(style.font));
    else
        painter.drawText(baseline, text);
}

}  // namespace

double textWidth(const QString& text, const TextStyle& style) {
    const QFontMetricsF metrics(style.font);
    if (!style.tabularDigits) return metrics.horizontalAdvance(text);
    const double digit = widestDigit(style.font);
    double width = 0;
    for (const QChar c : text)
        width += c.isDigit() ? digit : metrics.horizontalAdvance(c);
    return width;
}

void text(QPainter& painter, const QRectF& bounds, Qt::Alignment alignment, const QString& whole,
          const TextStyle& style) {
    const QFontMetricsF metrics(style.font);
    const double spill = metrics.height() + style.shadow.blur * blurReach;
    if (isClippedAway(painter, bounds.adjusted(-spill, -spill, spill, spill))) return;
    QString text = whole;
    double width = textWidth(text, style);
    // Letter spacing follows every letter. The space after the last letter is left out.
    const double spacing = style.font.letterSpacing();
    if (width - spacing > bounds.width() + 0.5) {
        text = metrics.elidedText(whole, Qt::ElideRight, bounds.width() + spacing);
        width = textWidth(text, style);
    }
    const double seen = width - spacing;
    double x = bounds.left();
    if (alignment & Qt::AlignHCenter) x = bounds.center().x() - seen / 2;
    if (alignment & Qt::AlignRight) x = bounds.right() - seen;
    // Vertically centred by the height of capitals: captions and numbers have no descenders.
    // Letters are sharp when they stand on a row of device pixels.
    const QPointF start = onPixelRow(painter, {x, bounds.center().y() + metrics.capHeight() / 2});
    const QRectF line(start - QPointF(0, metrics.ascent()), QSizeF(width, metrics.height()));
    const Shadow shadow = style.shaded ? Shadow{Theme::black(0.9), 6, 0} : style.shadow;
    softCopy(painter, style.font.key() + text, line, shadow, [&](QPainter& canvas) {
        drawLine(canvas, QPointF(0, metrics.ascent()), text, style, Qt::black);
    });
    drawLine(painter, start, text, style, style.color);
}

}  // namespace Paint
