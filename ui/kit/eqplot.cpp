#include "ui/kit/eqplot.hpp"

#include "ui/kit/text.hpp"

#include "Wendril/filtermath.hpp"

#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace Kit {

namespace {

constexpr std::size_t samples = 320;
constexpr int highestLine = static_cast<int>(EQPlot::topLevel);
constexpr int lineSpacing = 6;
constexpr double labelSize = 9;

const double logLow = std::log10(EQPlot::lowestHz);
const double logHigh = std::log10(EQPlot::highestHz);

constexpr double lineWidth = 2.2;
constexpr double glowDeviation = 2.5;  // of the Gaussian of a blur of 5

struct FrequencyLabel {
    double hz;
    QStringView text;
};

constexpr FrequencyLabel frequencyLabels[] = {
    {20, u"20"},   {50, u"50"},   {100, u"100"}, {200, u"200"},   {500, u"500"},
    {1000, u"1k"}, {2000, u"2k"}, {5000, u"5k"}, {10000, u"10k"}, {20000, u"20k"},
};

void drawFrequencyLines(QPainter& painter, const EQPlot& plot) {
    for (const int decade : {10, 100, 1000, 10000})
        for (int multiple = 1; multiple <= 9; ++multiple) {
            const int hz = decade * multiple;
            if (hz < EQPlot::lowestHz || hz > EQPlot::highestHz) continue;
            painter.setPen(QPen(Theme::white(multiple == 1 ? 0.14 : 0.05), 1));
            const double x = plot.x(hz);
            painter.drawLine(QPointF(x, plot.area.top()), QPointF(x, plot.area.bottom()));
        }
}

void drawLevelLines(QPainter& painter, const EQPlot& plot) {
    for (int db = -highestLine; db <= highestLine; db += lineSpacing) {
        painter.setPen(QPen(Theme::white(db == 0 ? 0.22 : 0.06), 1));
        const double y = plot.y(db);
        painter.drawLine(QPointF(plot.area.left(), y), QPointF(plot.area.right(), y));
    }
}

void drawLabels(QPainter& painter, const EQPlot& plot) {
    const Paint::TextStyle style{Theme::font(labelSize), Theme::secondary};
    for (int db = -highestLine; db <= highestLine; db += lineSpacing) {
        const QRectF place(plot.area.left() - 40, plot.y(db) - 6, 32, 12);
        Paint::text(painter, place, Qt::AlignRight | Qt::AlignVCenter,
                    (db > 0 ? QStringLiteral("+") : QString()) + QString::number(db), style);
    }
    for (const auto& [hz, text] : frequencyLabels) {
        const double x = std::clamp(plot.x(hz), plot.area.left() + 10, plot.area.right() - 10);
        const QRectF place(x - 20, plot.area.bottom() + 6, 40, 12);
        Paint::text(painter, place, Qt::AlignCenter, text.toString(), style);
    }
}

// The curve without the points that lie on a straight line between others. The time of a stroke grows
// with the number of points.
QPolygonF lineOf(const EQPlot& plot, const std::vector<double>& db) {
    constexpr double tolerance = 0.05;
    const std::size_t count = std::min(db.size(), EQPlot::freqs().size());
    std::vector<QPointF> points;
    for (std::size_t i = 0; i < count; ++i)
        points.emplace_back(plot.x(EQPlot::freqs()[i]), plot.y(EQPlot::drawnLevel(db[i])));
    const auto isStraight = [&points](std::size_t from, std::size_t to) {
        const double slope = (points[to].y() - points[from].y()) / (points[to].x() - points[from].x());
        for (std::size_t i = from + 1; i < to; ++i) {
            const double straight = points[from].y() + slope * (points[i].x() - points[from].x());
            if (std::abs(points[i].y() - straight) > tolerance) return false;
        }
        return true;
    };
    QPolygonF line;
    std::size_t kept = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const bool needed = i == 0 || i + 1 == count || !isStraight(kept, i + 1);
        if (!needed) continue;
        line << points[i];
        kept = i;
    }
    return line;
}

void shade(QPainter& painter, const EQPlot& plot, QPolygonF line, const QColor& color) {
    line << QPointF(line.back().x(), plot.y(0)) << QPointF(line.front().x(), plot.y(0));
    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::faded(color, 0.16));
    painter.drawPolygon(line);
}

// Opacity of a blurred line at a distance from its middle.
double glowAt(double distance, double opacity) {
    const double middle = std::erf(lineWidth / 2 / glowDeviation / std::sqrt(2));
    return opacity * middle * std::exp(-distance * distance / (2 * glowDeviation * glowDeviation));
}

// The glow is built of strokes of decreasing width. Each adds the difference in opacity between its edge
// and the edge of the next wider one.
void drawGlow(QPainter& painter, const QPainterPath& path, QPen pen, double opacity) {
    constexpr int strokes = 9;
    constexpr double step = (3 * glowDeviation - lineWidth / 2) / strokes;
    for (int i = strokes; i > 0; --i) {
        const double radius = lineWidth / 2 + i * step;
        pen.setWidthF(2 * radius);
        pen.setColor(Theme::faded(pen.color(), glowAt(radius, opacity) - glowAt(radius + step, opacity)));
        painter.strokePath(path, pen);
    }
}

}  // namespace

double EQPlot::reach(double height) { return beyond * height + 2; }

double EQPlot::x(double hz) const {
    return area.left() + area.width() * (std::log10(hz) - logLow) / (logHigh - logLow);
}

double EQPlot::y(double db) const { return area.top() + area.height() / 2 * (1 - db / topLevel); }

double EQPlot::hz(double x) const {
    return std::pow(10, logLow + (x - area.left()) / area.width() * (logHigh - logLow));
}

double EQPlot::db(double y) const {
    const double half = area.height() / 2;
    return (half - (y - area.top())) / half * topLevel;
}

double EQPlot::drawnLevel(double db) { return std::isnan(db) ? 0 : std::clamp(db, -drawnLimit, drawnLimit); }

const std::vector<double>& EQPlot::freqs() {
    static const std::vector<double> list = Wendril::FilterMath::frequencies(samples, lowestHz, highestHz);
    return list;
}

void drawEQGrid(QPainter& painter, const EQPlot& plot) {
    drawFrequencyLines(painter, plot);
    drawLevelLines(painter, plot);
    drawLabels(painter, plot);
}

void drawEQCurve(QPainter& painter, const EQPlot& plot, const std::vector<double>& db,
                 const EQCurveLook& look) {
    const QPolygonF line = lineOf(plot, db);
    if (line.isEmpty()) return;
    QPainterPath path;
    path.addPolygon(line);
    QPen pen(look.color, lineWidth, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin);
    painter.save();
    // Antialiasing would take fifteen times as long, and on parts so faint nobody sees it.
    painter.setRenderHint(QPainter::Antialiasing, false);
    if (look.fill) shade(painter, plot, line, look.color);
    drawGlow(painter, path, pen, 0.9);
    painter.restore();
    painter.strokePath(path, pen);
}

void drawThinEQCurve(QPainter& painter, const EQPlot& plot, const std::vector<double>& db,
                     const QColor& color) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, 1));
    painter.drawPolyline(lineOf(plot, db));
}

}  // namespace Kit
