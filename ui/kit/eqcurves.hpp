#pragma once

#include "ui/kit/eqplot.hpp"

#include <QColor>
#include <QPainter>
#include <QPixmap>
#include <QRegion>

#include <span>
#include <vector>

namespace Kit {

/// A curve over a plot.
struct EQCurve {
    enum class Line { glowing, thin };

    std::span<const double> db;  // at each of `EQPlot::freqs`
    QColor color;
    bool fill = false;  // shade the area between the curve and 0 dB
    Line line = Line::glowing;
};

/// Moves `drawn`, the levels of a curve on the screen, to `after`, and returns the part to draw anew, in
/// upright strips. Levels that differ too little to be seen are left as drawn. Many small changes thus add
/// up until they show.
QRegion moveEQCurve(const EQPlot& plot, std::vector<double>& drawn, const std::vector<double>& after,
                    bool fill);

/// All curves of a graph in one picture, of which only what has changed is drawn anew. The pixels are
/// computed here: the toolkit strokes a curve in several threads, which costs more than it saves.
class EQCurves {
public:
    /// The next `draw` makes this part of the curves anew.
    void outdate(const QRegion& part) { outdated += part; }

    /// `bounds` is the place of the picture, whose curves lie on `plot`, in the coordinates of the painter.
    /// A later curve lies on top.
    void draw(QPainter& painter, const QRectF& bounds, const EQPlot& plot, std::span<const EQCurve> curves);

private:
    QPixmap picture;
    QSizeF size;
    QRegion outdated;
};

}  // namespace Kit
