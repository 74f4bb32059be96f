#pragma once

#include <QColor>
#include <QPainter>
#include <QRectF>

#include <vector>

namespace Kit {

/// The scales of a filter graph: frequency from left to right, logarithmic, and level from bottom to
/// top, ±18 dB. Converts between them and the widget's coordinates.
struct EQPlot {
    static constexpr double lowestHz = 20;
    static constexpr double highestHz = 20000;

    static constexpr double topLevel = 18;      // dB
    static constexpr double drawnLimit = 21.6;  // dB: where curves are cut

    /// How far a curve is drawn above and below the plot, as a part of the plot's height, and in pixels.
    static constexpr double beyond = (drawnLimit / topLevel - 1) / 2;
    static double reach(double height);

    QRectF area;

    double x(double hz) const;
    double y(double db) const;
    double hz(double x) const;
    double db(double y) const;

    /// The frequencies, in Hz, at which curves give their levels.
    static const std::vector<double>& freqs();

    /// The level that is drawn for a level: at most a little outside of the plot, and 0 for one that
    /// is not a number.
    static double drawnLevel(double db);
};

/// Lines over the plot, and their labels at its left and under it.
void drawEQGrid(QPainter& painter, const EQPlot& plot);

/// An upright or a level line, 1 wide. It covers whole device pixels: lines of one kind are equally wide
/// and bright wherever they lie.
void drawEQLine(QPainter& painter, QPointF from, QPointF to, const QColor& color);

}  // namespace Kit
