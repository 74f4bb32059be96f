#pragma once

#include <QColor>
#include <QPainter>
#include <QRectF>

#include <vector>

namespace Kit {

/// Where frequencies and levels lie in the plot of a filter graph: 20 Hz to 20 kHz on a logarithmic
/// scale from left to right, +18 to -18 dB from top to bottom.
struct EqPlot {
    QRectF area;

    double x(double hz) const;
    double y(double db) const;
    double hz(double x) const;
    double db(double y) const;

    /// Where curves are sampled, in Hz.
    static const std::vector<double>& freqs();

    /// Levels beyond these are drawn at these: just outside of the plot.
    static double shownLevel(double db);
};

/// Lines and their labels, which stand at the left of the plot and under it.
void drawEqGrid(QPainter& painter, const EqPlot& plot);

struct EqCurveLook {
    QColor color;
    bool fill = false;  // shades what lies between the curve and 0 dB
};

/// Levels in dB at each of `EqPlot::freqs`.
void drawEqCurve(QPainter& painter, const EqPlot& plot, const std::vector<double>& db,
                 const EqCurveLook& look);

}  // namespace Kit
