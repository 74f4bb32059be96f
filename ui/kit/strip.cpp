#include "ui/kit/strip.hpp"

#include "ui/kit/blend.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace Paint {

namespace {

// The integral, up to `x`, of a ramp that rises from 0 at 0 to 1 at 1.
float rampIntegral(float x) {
    const float within = std::clamp(x, 0.0F, 1.0F);
    return within * within / 2 + std::max(x - 1, 0.0F);
}

// One side of a strip.
class Edge {
public:
    Edge(const Strip& strip, double Strip::End::*place)
        : top(strip.top.y)
        , start(strip.top.*place)
        , slope((strip.bottom.*place - start) / (strip.bottom.y - top))
        , width(std::max(least, static_cast<float>(std::abs(slope)))) {}

    void goTo(int y) { left = start + slope * (y - top) + std::min(0.0, slope); }

    // The pixels from the first to the one before the end are crossed in this row. Those that have no part
    // of a strip are counted where this takes no time.
    int first() const { return static_cast<int>(left); }
    int end() const { return static_cast<int>(left + width) + 1; }

    /// The part of the pixel at `x` that lies to the right of the edge.
    float partBeyond(int x) const {
        const auto right = static_cast<float>(x + 1 - left);
        return (rampIntegral(right) - rampIntegral(right - width)) * inverse;
    }

private:
    static constexpr float least = 1 / 256.0F;  // of an upright edge

    int top;
    double start;
    double slope;
    float width;  // in a row
    float inverse = 1 / width;
    double left = 0;
};

}  // namespace

void blendStrip(const Strip& strip, QPoint from, const QRect& to, QImage& image, const QImage& glass,
                QPoint glassPlace) {
    const int firstRow = std::max(strip.top.y, from.y());
    const int endRow = std::min(strip.bottom.y, from.y() + to.height());
    if (firstRow >= endRow) return;
    const int firstColumn = from.x();
    const int endColumn = from.x() + to.width();
    const float whole = strip.opacity * wholeOpacity;
    constexpr float nearest = 0.5;  // before the fraction is cut off
    Edge left(strip, &Strip::End::left);
    Edge right(strip, &Strip::End::right);
    for (int y = firstRow; y < endRow; ++y) {
        auto* const pixels = reinterpret_cast<QRgb*>(image.scanLine(to.y() + y - from.y())) + to.x();
        const auto* const panes = reinterpret_cast<const QRgb*>(glass.constScanLine(y - glassPlace.y()));
        left.goTo(y);
        right.goTo(y);
        const int inner = left.end();
        const int innerEnd = right.first();
        const int end = std::min(endColumn, right.end());
        for (int x = std::max(firstColumn, left.first()); x < end; ++x) {
            const bool isWhole = x >= inner && x < innerEnd;
            const float covered = isWhole ? 1 : left.partBeyond(x) - right.partBeyond(x);
            QRgb& pixel = pixels[x - firstColumn];
            pixel = crossfade(pixel, over(strip.color, panes[x - glassPlace.x()]),
                              static_cast<std::uint32_t>(whole * covered + nearest));
        }
    }
}

}  // namespace Paint
