#include "ui/kit/eqcurves.hpp"

#include "ui/kit/blend.hpp"
#include "ui/kit/pictures.hpp"

#include <QImage>
#include <QLineF>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <map>
#include <utility>

namespace Kit {

namespace {

constexpr double fillOpacity = 0.16;

// How opaque a line is at a distance from its middle, in pixels.
class Profile {
public:
    Profile(EQCurve::Line line, double ratio) {
        const bool glows = line == EQCurve::Line::glowing;
        constexpr double lineWidth = 2.2;
        constexpr double thinWidth = 1;
        half = (glows ? lineWidth : thinWidth) / 2 * ratio;
        deviation = glows ? glowDeviation * ratio : 0;
        reach = static_cast<float>(half + 1 + 3 * deviation);
        const auto steps = static_cast<std::size_t>(std::ceil(reach * parts)) + 1;
        for (std::size_t slant = 0; slant < opacities.size(); ++slant)
            for (std::size_t step = 0; step < steps; ++step)
                opacities.at(slant).push_back(static_cast<uchar>(std::lround(
                    255 * opacityAt((double(step) + 0.5) / parts, M_PI / 4 * double(slant) / (slants - 1)))));
    }

    /// The opacities for a line in that direction, at steps of 1 / `parts` pixels.
    const std::vector<uchar>& across(float dx, float dy) const {
        const float angle =
            std::atan2(std::min(std::abs(dx), std::abs(dy)), std::max(std::abs(dx), std::abs(dy)));
        return opacities.at(static_cast<std::size_t>(std::lround(angle / float(M_PI / 4) * (slants - 1))));
    }

    static constexpr int parts = 16;
    float reach = 0;

private:
    static constexpr double glowDeviation = 2.5;  // of the Gaussian of a blur of 5
    static constexpr int slants = 9;

    // Of a pixel that lies `distance` beyond a straight edge which is turned by `angle` from a level one: the
    // part of it within the edge.
    static double covered(double distance, double angle) {
        const double wide = std::cos(angle);
        const double narrow = std::sin(angle);
        const double left = (wide + narrow) / 2 - std::abs(distance);  // to the pixel's farthest corner
        if (left <= 0) return distance > 0 ? 0 : 1;
        const double beyond = left < narrow ? left * left / (2 * wide * narrow) : (left - narrow / 2) / wide;
        return distance > 0 ? beyond : 1 - beyond;
    }

    double opacityAt(double distance, double angle) const {
        const double line = covered(distance - half, angle) - covered(distance + half, angle);
        if (deviation == 0) return line;
        constexpr double brightest = 0.8;
        const double blurred = brightest * std::erf(half / deviation / std::sqrt(2)) *
                               std::exp(-distance * distance / (2 * deviation * deviation));
        return line + (1 - line) * (1 - std::exp(-blurred));
    }

    double half;
    double deviation;
    std::array<std::vector<uchar>, slants> opacities;
};

// The opacities of a curve's pixels, within a part of the picture.
class Opacities {
public:
    explicit Opacities(const QRect& area)
        : area(area)
        , values(static_cast<std::size_t>(area.width()) * static_cast<std::size_t>(area.height()), 0) {}

    uchar* row(int y) { return values.data() + std::ptrdiff_t{y - area.top()} * area.width(); }

    // The line goes through the middles of pixels at halves. Its pieces go from left to right, and each
    // covers the pixels between the upright lines on its ends; at a bend also those in the gap beyond.
    void stroke(const QPolygonF& line, const Profile& profile) {
        for (qsizetype i = 0; i + 1 < line.size(); ++i) {
            if (line[i + 1].x() + profile.reach < area.left()) continue;
            if (line[i].x() - profile.reach > area.right() + 1) break;
            const auto gap = [&](qsizetype bend) {
                if (bend == 0 || bend + 1 == line.size()) return 0.0F;
                const QPointF one = line[bend] - line[bend - 1];
                const QPointF other = line[bend + 1] - line[bend];
                const double lengths =
                    std::sqrt(QPointF::dotProduct(one, one) * QPointF::dotProduct(other, other));
                const double sine = std::abs(one.x() * other.y() - one.y() * other.x());
                const double tangentOfHalf = sine / (lengths + QPointF::dotProduct(one, other));
                return static_cast<float>(tangentOfHalf) * profile.reach + 1;
            };
            strokePiece(QLineF(line[i], line[i + 1]), gap(i), gap(i + 1), profile);
        }
    }

    // Between the line and a level.
    void shade(const QPolygonF& line, double level) {
        std::array<uchar, 256> shaded{};
        for (std::size_t below = 0; below < shaded.size(); ++below)
            shaded.at(below) =
                static_cast<uchar>(std::lround(255 - (255 - static_cast<double>(below)) * (1 - fillOpacity)));
        for (qsizetype i = 0; i + 1 < line.size(); ++i) {
            const QPointF from = line[i];
            const QPointF to = line[i + 1];
            const int last = std::min(static_cast<int>(std::ceil(to.x() - 0.5)), area.right() + 1);
            for (int x = std::max(static_cast<int>(std::ceil(from.x() - 0.5)), area.left()); x < last; ++x) {
                const double height =
                    from.y() + (to.y() - from.y()) * (x + 0.5 - from.x()) / (to.x() - from.x());
                const auto [upper, lower] = std::minmax(height, level);
                const int bottom = std::min(static_cast<int>(std::ceil(lower - 0.5)), area.bottom() + 1);
                for (int y = std::max(static_cast<int>(std::ceil(upper - 0.5)), area.top()); y < bottom; ++y)
                    row(y)[x - area.left()] = shaded.at(row(y)[x - area.left()]);
            }
        }
    }

    // Puts the curve on `image`, which has the place and the size of the part.
    void blend(QImage& image, const Paint::Shades& shades) {
        for (int y = area.top(); y <= area.bottom(); ++y) {
            const uchar* const opacities = row(y);
            auto* const pixels = reinterpret_cast<QRgb*>(image.scanLine(y - area.top()));
            constexpr int groupSize = sizeof(std::uint64_t);
            int x = 0;
            for (; x + groupSize <= area.width(); x += groupSize) {
                std::uint64_t group = 0;
                std::memcpy(&group, opacities + x, groupSize);
                if (group == 0) continue;
                std::array<QRgb, groupSize> above;
                std::transform(opacities + x, opacities + x + groupSize, above.begin(),
                               [&](uchar opacity) { return shades[opacity]; });
                Paint::overRow(pixels + x, above.data(), groupSize);
            }
            for (; x < area.width(); ++x)
                pixels[x] = Paint::over(pixels[x], shades[opacities[x]]);
        }
    }

private:
    void strokePiece(const QLineF& piece, float before, float after, const Profile& profile) {
        const auto length = static_cast<float>(piece.length());
        if (length == 0) return;
        const auto ux = static_cast<float>(piece.dx()) / length;
        const auto uy = static_cast<float>(piece.dy()) / length;
        const std::vector<uchar>& opacities = profile.across(ux, uy);
        const float reach = profile.reach;
        const auto [upper, lower] = std::minmax({piece.y1(), piece.y2()});
        const int bottom = std::min(static_cast<int>(std::ceil(lower + reach)), area.bottom());
        for (int y = std::max(static_cast<int>(std::floor(upper - reach)), area.top()); y <= bottom; ++y) {
            const auto down = static_cast<float>(y + 0.5 - piece.y1());
            // Where the row is between the ends, and within reach.
            float left = (-before - down * uy) / ux;
            float right = (length + after - down * uy) / ux;
            if (std::abs(uy) > 1e-4F) {
                const auto [one, other] = std::minmax({(down * ux - reach) / uy, (down * ux + reach) / uy});
                left = std::max(left, one);
                right = std::min(right, other);
            } else if (std::abs(down) > reach) {
                continue;
            }
            const auto start = static_cast<float>(piece.x1() - 0.5);
            const int first = std::max(static_cast<int>(std::ceil(left + start)), area.left());
            const int last = std::min(static_cast<int>(std::floor(right + start)), area.right());
            // Between the ends the distance changes evenly from pixel to pixel.
            const int inner =
                std::clamp(static_cast<int>(std::ceil(start - down * uy / ux)), first, last + 1);
            const int outer =
                std::clamp(static_cast<int>(std::floor(start + (length - down * uy) / ux)), inner - 1, last);
            uchar* const pixels = row(y) - area.left();
            const auto raise = [&](int x, float distance) {
                const auto step = static_cast<std::size_t>(distance * Profile::parts);
                pixels[x] = std::max(pixels[x], opacities[std::min(step, opacities.size() - 1)]);
            };
            const auto raiseBeyond = [&](int x, float end) {
                const float across = static_cast<float>(x) - start;
                const float aside = down * ux - across * uy;
                const float along = across * ux + down * uy - end;
                raise(x, std::sqrt(aside * aside + along * along));
            };
            for (int x = first; x < inner; ++x)
                raiseBeyond(x, 0);
            float distance = down * ux - (static_cast<float>(inner) - start) * uy;
            for (int x = inner; x <= outer; ++x, distance -= uy)
                raise(x, std::abs(distance));
            for (int x = outer + 1; x <= last; ++x)
                raiseBeyond(x, length);
        }
    }

    const QRect area;
    std::vector<uchar> values;
};

// The curve in pixels, without the points that lie on a straight line between others. The time of a
// stroke grows with the number of points.
QPolygonF lineOf(const EQPlot& plot, std::span<const double> db, const QTransform& toPixels) {
    constexpr double tolerance = 0.05;
    constexpr double any = std::numeric_limits<double>::infinity();
    QPolygonF line;
    QPointF last;
    // The slopes from the end of the line that pass close to all points since.
    double least = -any;
    double most = any;
    for (std::size_t i = 0; i < std::min(db.size(), EQPlot::freqs().size()); ++i) {
        const QPointF point =
            toPixels.map(QPointF(plot.x(EQPlot::freqs()[i]), plot.y(EQPlot::drawnLevel(db[i]))));
        const auto slope = [&](double above) {
            return (point.y() + above - line.back().y()) / (point.x() - line.back().x());
        };
        if (i == 0) {
            line << point;
        } else if (slope(0) < least || slope(0) > most) {
            line << last;
            least = -any;
            most = any;
        }
        if (i > 0) {
            least = std::max(least, slope(-tolerance));
            most = std::min(most, slope(tolerance));
        }
        last = point;
    }
    if (!line.empty() && last != line.back()) line << last;
    return line;
}

// Those of one ratio are in use at a time, on two screens those of two. Others come and go as a window is
// resized.
const Profile& profileOf(EQCurve::Line line, double ratio) {
    constexpr std::size_t most = 8;
    static std::map<std::pair<EQCurve::Line, double>, Profile> profiles;
    if (profiles.size() >= most && !profiles.contains({line, ratio})) profiles.clear();
    return profiles.try_emplace({line, ratio}, line, ratio).first->second;
}

}  // namespace

QRegion moveEQCurve(const EQPlot& plot, std::vector<double>& drawn, const std::vector<double>& after,
                    bool fill) {
    constexpr double glow = 9;
    constexpr double visible = 0.005;  // dB
    constexpr std::size_t strip = 20;  // frequencies
    QRegion changed;
    const std::size_t count = std::min(drawn.size(), EQPlot::freqs().size());
    const std::vector<double> before = drawn;
    for (std::size_t from = 0; from < count; from += strip) {
        QRectF area;
        for (std::size_t i = from; i < std::min(from + strip, count); ++i) {
            if (std::abs(before[i] - after[i]) < visible) continue;
            drawn[i] = after[i];
            for (std::size_t j = i == 0 ? 0 : i - 1; j < std::min(i + 2, count); ++j) {
                const auto [lowest, highest] = std::minmax({fill ? 0.0 : before[j], before[j], after[j]});
                const double x = plot.x(EQPlot::freqs()[j]);
                area |= QRectF(QPointF(x, plot.y(EQPlot::drawnLevel(highest))),
                               QPointF(x, plot.y(EQPlot::drawnLevel(lowest))));
            }
        }
        if (!area.isNull()) changed += area.adjusted(-glow, -glow, glow, glow).toAlignedRect();
    }
    return changed;
}

void EQCurves::draw(QPainter& painter, const QRectF& bounds, const EQPlot& plot,
                    std::span<const EQCurve> curves) {
    const QRect place = Paint::pixelsOf(painter, bounds);
    if (place.isEmpty() || Paint::isClippedAway(painter, bounds)) return;
    if (picture.size() != place.size() || size != bounds.size()) {
        picture = QPixmap(place.size());
        picture.fill(Qt::transparent);
        size = bounds.size();
        outdated = bounds.toAlignedRect();
    }
    const QTransform toPixels =
        QTransform::fromTranslate(-bounds.x(), -bounds.y()) *
        QTransform::fromScale(place.width() / size.width(), place.height() / size.height());
    if (!outdated.isEmpty()) {
        std::vector<std::pair<QPolygonF, Paint::Shades>> prepared;
        for (const EQCurve& curve : curves)
            prepared.emplace_back(lineOf(plot, curve.db, toPixels), Paint::shadesOf(curve.color));
        QPainter canvas(&picture);
        canvas.setCompositionMode(QPainter::CompositionMode_Source);
        for (const QRect& part : std::exchange(outdated, {})) {
            const QRect area = toPixels.mapRect(QRectF(part)).toAlignedRect() & picture.rect();
            QImage image(area.size(), QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::transparent);
            for (std::size_t i = 0; i < curves.size(); ++i) {
                const auto& [line, shades] = prepared[i];
                Opacities opacities(area);
                opacities.stroke(line, profileOf(curves[i].line, Paint::ratioOf(painter)));
                if (curves[i].fill) opacities.shade(line, toPixels.map(QPointF(0, plot.y(0))).y());
                opacities.blend(image, shades);
            }
            canvas.drawImage(area.topLeft(), image);
        }
    }
    Paint::drawStretched(painter, place, picture, {});
}

}  // namespace Kit
