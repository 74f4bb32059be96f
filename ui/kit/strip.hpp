#pragma once

#include <QImage>
#include <QPoint>
#include <QRect>

namespace Paint {

/// A slanted strip with smooth edges, such as a piece of a needle, whose ends lie on edges of pixel rows.
/// It lies under glass. In device pixels. The toolkit would draw it with several threads where it is tall.
struct Strip {
    struct End {
        int y;
        double left, right;
    };

    End top, bottom;
    QRgb color;
    float opacity;
};

/// Blends the strip into `to` of an opaque image, which holds the pixels of the device from `from` on. The
/// image shows the glass already; `glass` is the picture of it whose first pixel is at `glassPlace`.
void blendStrip(const Strip& strip, QPoint from, const QRect& to, QImage& image, const QImage& glass,
                QPoint glassPlace);

}  // namespace Paint
