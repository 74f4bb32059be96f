#include "ui/kit/text.hpp"

#include <QFontMetricsF>
#include <QHash>

#include <algorithm>
#include <initializer_list>

namespace Paint {

namespace {

// Asked once for each font.
double widestDigit(const QFont& font) {
    static QHash<QFont, double> known;
    const auto found = known.constFind(font);
    if (found != known.cend()) return *found;
    const QFontMetricsF metrics(font);
    double widest = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit)
        widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
    return *known.insert(font, widest);
}

// Each digit stands in the middle of a place that is as wide as the widest.
template <class Draw>
void forEachCharacter(QPointF baseline, const QString& text, const QFont& font, Draw draw) {
    const QFontMetricsF metrics(font);
    const double digitWidth = widestDigit(font);
    double x = baseline.x();
    for (const QChar c : text) {
        const double own = metrics.horizontalAdvance(c);
        const double room = c.isDigit() ? digitWidth : own;
        draw(QPointF(x + (room - own) / 2, baseline.y()), QString(c));
        x += room;
    }
}

void drawLine(QPainter& painter, QPointF baseline, const QString& text, const TextStyle& style,
              const QColor& color) {
    painter.setFont(style.font);
    painter.setPen(color);
    if (style.tabularDigits)
        forEachCharacter(baseline, text, style.font,
                         [&](QPointF place, const QString& letter) { painter.drawText(place, letter); });
    else
        painter.drawText(baseline, text);
}

// The shadow of letters drawn at each of `offsets`.
void drawShadow(QPainter& painter, QPointF start, const QString& text, const TextStyle& style,
                const Shadow& shadow, std::initializer_list<QPointF> offsets) {
    const QFontMetricsF metrics(style.font);
    const QRectF line(start - QPointF(0, metrics.ascent()), QSizeF(textWidth(text, style), metrics.height()));
    softCopy(painter, style.font.key() + text, line, shadow, [&](QPainter& canvas) {
        for (const QPointF& offset : offsets)
            drawLine(canvas, QPointF(0, metrics.ascent()) + offset, text, style, Qt::black);
    });
}

// A dark ground in the form of the letters, broader than they are. Tabular texts change often, so theirs
// is made of pictures of single letters: pictures of whole texts would fill the cache.
void drawShade(QPainter& painter, QPointF start, const QString& text, const TextStyle& style) {
    constexpr double broader = 1.5;
    const auto draw = [&](QPointF place, const QString& letters) {
        drawShadow(painter, place, letters, style, {Theme::black(0.65), 5, 0},
                   {{-broader, 0}, {broader, 0}, {0, -broader}, {0, broader}, {}});
    };
    if (style.tabularDigits)
        forEachCharacter(start, text, style.font, draw);
    else
        draw(start, text);
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
    if (style.shaded) drawShade(painter, start, text, style);
    drawShadow(painter, start, text, style, style.shadow, {QPointF()});
    drawLine(painter, start, text, style, style.color);
}

}  // namespace Paint
