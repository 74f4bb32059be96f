#pragma once

#include "ui/kit/eqplot.hpp"

#include <QColor>
#include <QPainter>
#include <QPointF>
#include <QString>

namespace Kit {

/// A handle over a plot.
struct EQMark {
    static constexpr double size = 18;
    static constexpr double extent = 20;  // from its centre, with its glow and its ring

    QPointF centre;
    QString label;
    QColor color;
    bool dimmed = false;
    double ring = 0;  // the opacity of the ring around it
};

void drawEQMark(QPainter& painter, const EQMark& mark);

/// A cross over the plot through a point, with the frequency and the level of that point on its scales, in a
/// graph of that width.
void drawEQCross(QPainter& painter, const EQPlot& plot, QPointF at, double graphWidth);

}  // namespace Kit
