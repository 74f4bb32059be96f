#include "ui/kit/eqmarks.hpp"

#include "ui/kit/formats.hpp"
#include "ui/kit/layer.hpp"
#include "ui/kit/shadows.hpp"
#include "ui/kit/text.hpp"

#include <algorithm>

namespace Kit {

namespace {

// Its background covers the label of the scale behind it.
void drawCrossLabel(QPainter& painter, const QRectF& place, const QString& text) {
    const QRectF field = Paint::snapped(painter, place);
    Paint::fill(painter, field, 4, Theme::well);
    Paint::layered(painter, field,
                   [&](QPainter& canvas) { Paint::edge(canvas, field, 4, Theme::white(0.2)); });
    Paint::text(painter, field, Qt::AlignCenter, text, {Theme::font(9), Theme::text, {}, true});
}

}  // namespace

void drawEQMark(QPainter& painter, const EQMark& mark) {
    QRectF circle(0, 0, EQMark::size, EQMark::size);
    circle.moveCenter(mark.centre);
    constexpr double radius = EQMark::size / 2;
    constexpr double ringGap = 3;
    const auto layered = [&](const Paint::Drawing& draw) {
        Paint::layered(painter, circle.adjusted(-ringGap, -ringGap, ringGap, ringGap), draw);
    };
    if (!mark.dimmed) Paint::dropShadow(painter, circle, radius, {Theme::faded(mark.color, 0.8), 5, 0});
    layered([&](QPainter& canvas) {
        Paint::fill(canvas, circle, radius, mark.dimmed ? Theme::white(0.25) : mark.color);
    });
    layered([&](QPainter& canvas) { Paint::edge(canvas, circle, radius, Theme::white(0.5)); });
    if (mark.ring > 0)
        layered([&](QPainter& canvas) {
            Paint::edge(canvas, circle.adjusted(-ringGap, -ringGap, ringGap, ringGap), radius + ringGap,
                        Theme::white(mark.ring), 1.5);
        });
    Paint::text(painter, circle, Qt::AlignCenter, mark.label,
                {Theme::font(9), mark.dimmed ? Theme::secondary : Theme::black(0.8), {}, false});
}

void drawEQCross(QPainter& painter, const EQPlot& plot, QPointF at, double graphWidth) {
    const QRectF area = plot.area;
    const auto draw = [&](QPointF from, QPointF to) {
        Paint::layered(painter, QRectF(from, to).adjusted(-1, -1, 1, 1),
                       [&](QPainter& canvas) { drawEQLine(canvas, from, to, Theme::white(0.28)); });
    };
    draw({at.x(), area.top()}, {at.x(), area.bottom()});
    draw({area.left(), at.y()}, {area.right(), at.y()});
    constexpr QSizeF labelSize(46, 14);
    QRectF frequency(QPointF(0, area.bottom() + 5), labelSize);
    frequency.moveLeft(std::clamp(at.x() - labelSize.width() / 2, 0.0, graphWidth - labelSize.width()));
    drawCrossLabel(painter, frequency, Formats::formatHz(plot.hz(at.x())));
    QRectF level(QPointF(), labelSize);
    level.moveCenter({level.center().x(), at.y()});
    drawCrossLabel(painter, level, Formats::signedDecibels(plot.db(at.y())));
}

}  // namespace Kit
