#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QRectF>
#include <QSize>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace Paint {

/// The colour of a row: 0 at the top, 1 at the bottom.
using RowColor = std::function<QColor(double)>;

/// Colours that change slowly from place to place.
struct FineFill {
    RowColor color;

    /// The opacities of white light over one row of `size`, in device pixels.
    std::function<void(const QSize& size, int row, std::span<float> opacities)> light;
};

/// Fills a rounded rectangle. The colours are computed more finely than the 8 bits that a pixel has for
/// each, and fixed noise of one level is added, so that no contours show. Only while drawing a kept
/// picture.
void fillFine(QPainter& painter, const QRectF& shape, double radius, const RowColor& color);

/// A large area in such colours, for its owner to keep. A quarter of the pixels is kept, with 10 bits for
/// each colour; the noise is added when it is drawn, which takes no longer than copying a full picture.
class FinePicture {
public:
    /// Fills a rounded rectangle. `filling` is asked again when the number of pixels has changed, and is
    /// called for half of the rows and columns.
    void draw(QPainter& painter, const QRectF& shape, double radius, const FineFill& filling);

    /// Gives the memory back; the next `draw` makes the picture anew.
    void drop() {
        half = std::vector<std::uint32_t>();  // assigning {} would keep it
        drawnSize = {};
    }

private:
    void fill(const QSize& size, const FineFill& filling);

    /// Writes the pixels from `from` on to those of `image` in `to`.
    void write(QPoint from, const QRect& to, QImage& image) const;

    std::vector<std::uint32_t> half;  // row by row
    std::size_t rowLength = 0;
    QSize drawnSize;  // of the part of `half` that is drawn
};

/// The colour between two.
QColor mixed(const QColor& from, const QColor& to, double part);

}  // namespace Paint
