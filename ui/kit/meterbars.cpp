#include "ui/kit/meterbars.hpp"

#include "ui/kit/animation.hpp"
#include "ui/kit/blend.hpp"
#include "ui/kit/control.hpp"
#include "ui/kit/formats.hpp"
#include "ui/kit/shadows.hpp"
#include "ui/kit/theme.hpp"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <utility>

namespace Kit {

namespace {

constexpr double emptyLevel = -60;
constexpr double fullLevel = 6;
constexpr double glowBlur = 3;
constexpr int pictureHeight = 512;  // of the lit bar in the kept picture, in device pixels

void drawLitBar(QPainter& painter, const QRectF& bar, double radius, double blur) {
    Paint::dropShadow(painter, bar, radius, {Theme::faded(Theme::accent, 0.9), blur, 0});
    QLinearGradient heat(bar.topLeft(), bar.bottomLeft());
    heat.setColorAt(0, Theme::rgb(1.0, 0.75, 0.4));
    heat.setColorAt(0.5, Theme::accent);
    heat.setColorAt(1, Theme::faded(Theme::accent, 0.6));
    Paint::fill(painter, bar, radius, heat);
}

// The lit part of a bar: a picture whose middle is stretched to the height needed.
struct LitPart {
    QImage picture;
    QRect place;     // in device pixels
    int corner = 0;  // height of the ends, which are not stretched

    // Blends it into `to` of an image, which holds the pixels of the device from `from` on.
    void write(QPoint from, const QRect& to, QImage& image) const {
        const QRect part = QRect(from, to.size()) & place;
        for (int y = part.top(); y <= part.bottom(); ++y) {
            const auto* const source =
                reinterpret_cast<const QRgb*>(picture.constScanLine(rowFor(y - place.top())));
            auto* const pixels = reinterpret_cast<QRgb*>(image.scanLine(to.y() + y - from.y()));
            Paint::overRow(pixels + to.x() + part.left() - from.x(), source + part.left() - place.left(),
                           part.width());
        }
    }

private:
    int rowFor(int row) const {
        if (row < corner) return row;
        const int fromFoot = place.height() - row;
        if (fromFoot <= corner) return picture.height() - fromFoot;
        return corner + (2 * (row - corner) + 1) * (picture.height() - 2 * corner) /
                            (2 * (place.height() - 2 * corner));
    }
};

}  // namespace

// A widget for screen readers. The group, which covers it, draws it in the coordinates of their parent.
class MeterBars::Bar final : public Control {
public:
    /// `moved` gets the height from the foot of the bar, glow included, up to which its look has changed.
    Bar(double width, std::function<void(int)> moved, QWidget* parent)
        : Control(parent)
        , barWidth(width)
        , moved(std::move(moved)) {
        setFocusPolicy(Qt::NoFocus);
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

    void setBarWidth(double width) { barWidth = width; }

    void setLevel(float value) {
        level = value;
        fill.moveTo(fractionOf(value));
    }

    void drawTrack(QPainter& painter) const {
        Paint::cached(painter, QStringLiteral("meter track"), track(), [this](QPainter& canvas) {
            Paint::fill(canvas, QRectF(QPointF(), track().size()), barWidth / 2,
                        Theme::faded(Theme::accent, 0.12));
        });
    }

    // All of it lies on whole device pixels, so that all bars are equally wide.
    LitPart litPart(const QPainter& painter) {
        const QRect bar = Paint::pixelsOf(painter, track());
        const int lit =
            static_cast<int>(std::round(litHeight(fill.position()) / track().height() * bar.height()));
        if (lit < 1) return {};
        const double ratio = Paint::ratioOf(painter);
        const int end = std::min((bar.width() + 1) / 2, lit / 2);
        const int margin = static_cast<int>(std::ceil(glow * ratio));
        if (const PictureKind kind{bar.width(), end, ratio}; picture.isNull() || kind != pictured) {
            picture = litPicture(kind, margin).toImage();
            pictured = kind;
        }
        const QRect place(bar.left(), bar.bottom() + 1 - lit, bar.width(), lit);
        return {picture, place.adjusted(-margin, -margin, margin, margin), margin + end};
    }

    QAccessible::Role accessibleRole() const override { return QAccessible::ProgressBar; }
    QString valueText() const override {
        return std::isfinite(level) ? Formats::decibels(level) : QStringLiteral("—");
    }

protected:
    void paint(QPainter&) override {}

private:
    struct PictureKind {
        int width;
        int end;  // height of the rounded ends
        double ratio;

        bool operator==(const PictureKind&) const = default;
    };

    static QPixmap litPicture(const PictureKind& kind, int margin) {
        const QString key = Paint::keyOf("lit meter", {double(kind.width), double(kind.end), kind.ratio}, {});
        return Paint::kept(key, [&] {
            QPixmap pixmap(kind.width + 2 * margin, pictureHeight + 2 * margin);
            pixmap.fill(Qt::transparent);
            QPainter canvas(&pixmap);
            canvas.setRenderHint(QPainter::Antialiasing);
            drawLitBar(canvas, QRectF(margin, margin, kind.width, pictureHeight), kind.end,
                       glowBlur * kind.ratio);
            return pixmap;
        });
    }

    QRectF track() const {
        return {x() + (width() - barWidth) / 2, double(y() + glow), barWidth, double(height() - 2 * glow)};
    }

    double litHeight(double fraction) const { return std::round(fraction * (height() - 2 * glow)); }

    // The gradient spans the lit part, so that all of it changes with its height. Above it nothing changes.
    void showFill() {
        const double before = litHeight(std::exchange(drawn, fill.position()));
        const double now = litHeight(drawn);
        if (now != before) moved(static_cast<int>(std::max(before, now)) + 2 * glow);
    }

    double barWidth;
    const std::function<void(int)> moved;
    float level = -std::numeric_limits<float>::infinity();
    Animation fill{Animation::Kind::even, 0, *this, [this] { showFill(); }};
    double drawn = 0;  // the fraction at the last repaint
    QImage picture;    // of the lit part
    PictureKind pictured{};
};

MeterBars::MeterBars(const QStringList& names, const Look& look, Paint::Drawing ground, QWidget* parent)
    : QWidget(parent)
    , look(look)
    , drawGround(std::move(ground)) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    for (const QString& name : names) {
        bars.push_back(new Bar(
            look.width, [this](int changed) { update(0, height() - changed, width(), changed); }, parent));
        bars.back()->setAccessibleName(name);
    }
    raise();
    setFixedWidth(static_cast<int>(std::ceil(look.width)) + (static_cast<int>(bars.size()) - 1) * look.pitch +
                  2 * glow);
}

double MeterBars::fractionOf(float level) {
    if (!std::isfinite(level)) return 0;
    return std::clamp((level - emptyLevel) / (fullLevel - emptyLevel), 0.0, 1.0);
}

void MeterBars::setLevels(const std::vector<float>& levels) {
    for (std::size_t i = 0; i < std::min(levels.size(), bars.size()); ++i)
        bars[i]->setLevel(levels[i]);
}

void MeterBars::setGrowth(double factor) {
    growth = factor;
    for (Bar* const bar : bars)
        bar->setBarWidth(look.width * factor);
    placeBars();
    outdateGround();
}

void MeterBars::outdateGround() {
    ground.outdate();
    update();
}

void MeterBars::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRect place = Paint::pixelsOf(painter, rect());
    const QImage under = ground.picture(painter, rect(), [this](QPainter& canvas) {
        canvas.translate(-pos());
        drawGround(canvas);
        for (const Bar* const bar : bars)
            bar->drawTrack(canvas);
    });
    painter.translate(-pos());
    std::vector<LitPart> lit;
    for (Bar* const bar : bars)
        lit.push_back(bar->litPart(painter));
    for (const QRect& part : Paint::exposedBy(painter) & place)
        Paint::writePixels(painter, part, [&](QPoint from, const QRect& to, QImage& image) {
            Paint::copyPixels(under, from - place.topLeft(), to, image);
            for (const LitPart& each : lit)
                each.write(from, to, image);
        });
}

void MeterBars::moveEvent(QMoveEvent*) { placeBars(); }

void MeterBars::resizeEvent(QResizeEvent*) { placeBars(); }

void MeterBars::placeBars() {
    const double pitch = growth * look.pitch;
    const int each = static_cast<int>(std::ceil(growth * look.width)) + 2 * glow;
    double left = x() + (width() - each - pitch * (static_cast<double>(bars.size()) - 1)) / 2;
    for (Bar* const bar : bars) {
        bar->setGeometry(static_cast<int>(std::round(left)), y(), each, height());
        left += pitch;
    }
}

}  // namespace Kit
