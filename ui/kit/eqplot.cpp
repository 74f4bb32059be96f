#include "ui/kit/eqplot.hpp"

#include "ui/kit/pictures.hpp"
#include "ui/kit/text.hpp"

#include "Wendril/filtermath.hpp"

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
            const double x = plot.x(hz);
            drawEQLine(painter, {x, plot.area.top()}, {x, plot.area.bottom()},
                       Theme::white(multiple == 1 ? 0.14 : 0.05));
        }
}

void drawLevelLines(QPainter& painter, const EQPlot& plot) {
    for (int db = -highestLine; db <= highestLine; db += lineSpacing) {
        const double y = plot.y(db);
        drawEQLine(painter, {plot.area.left(), y}, {plot.area.right(), y},
                   Theme::white(db == 0 ? 0.22 : 0.06));
    }
}

void drawLabels(QPainter& painter, const EQPlot& plot) {
    const Paint::TextStyle style{Theme::font(labelSize), Theme::secondary};
    for (int db = -highestLine; db <= highestLine; db += lineSpacing) {
        const QRectF place(plot.area.left() - 40, plot.y(db) - 6, 32, 12);
        Paint::text(painter, place, Qt::AlignRight | Qt::AlignVCenter,
                    (db > 0 ? QStringLiteral("+") : QString()) + QString::number(db), style);
    }
    // In a low graph a curve that is cut runs through the usual place, so the labels stand closer to the
    // plot.
    const double cut = EQPlot::beyond * plot.area.height();
    const double centre = plot.area.bottom() + std::min(12.0, cut - 5.5);
    for (const auto& [hz, text] : frequencyLabels) {
        const double x = std::clamp(plot.x(hz), plot.area.left() + 10, plot.area.right() - 10);
        const QRectF place(x - 20, centre - 6, 40, 12);
        Paint::text(painter, place, Qt::AlignCenter, text.toString(), style);
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

void drawEQLine(QPainter& painter, QPointF from, QPointF to, const QColor& color) {
    const QTransform device = painter.deviceTransform();
    const double width = std::max(1.0, std::round(Paint::ratioOf(painter)));
    QRectF line(device.map(from), device.map(to));
    const QPointF half(line.width() == 0 ? width / 2 : 0, line.height() == 0 ? width / 2 : 0);
    line.adjust(-half.x(), -half.y(), half.x(), half.y());
    painter.save();
    painter.setTransform(device.inverted(), true);
    painter.fillRect(QRect(line.topLeft().toPoint(), line.size().toSize()), color);
    painter.restore();
}

void drawEQGrid(QPainter& painter, const EQPlot& plot) {
    drawFrequencyLines(painter, plot);
    drawLevelLines(painter, plot);
    drawLabels(painter, plot);
}

}  // namespace Kit
