#include "ui/kit/panel.hpp"

#include "ui/kit/caption.hpp"
#include "ui/kit/finefill.hpp"
#include "ui/kit/opaquepart.hpp"
#include "ui/kit/pictures.hpp"
#include "ui/kit/shadows.hpp"

#include <QPaintEvent>

#include <algorithm>
#include <cmath>
#include <vector>

namespace Kit {

namespace {

constexpr double cornerRadius = 30;
constexpr int withinCorners = 10;  // that far in, the round corners and the edge have ended
constexpr int padding = 26;
constexpr int rowSpacing = 22;
constexpr double farBlur = 34;
constexpr double farOffset = 26;
constexpr int shadowReach = static_cast<int>(Paint::blurReach * farBlur + farOffset);

// Light from the top left corner, which fades with the distance.
void lightRow(double reach, int row, std::span<float> opacities) {
    constexpr float brightest = 0.07F;
    const auto down = static_cast<float>(row) + 0.5F;
    const auto slope = brightest / static_cast<float>(reach);
    std::ranges::fill(opacities, 0.0F);
    if (down > static_cast<float>(reach)) return;
    for (std::size_t i = 0; i < opacities.size(); ++i) {
        const auto across = static_cast<float>(static_cast<int>(i)) + 0.5F;
        opacities[i] = std::max(0.0F, brightest - slope * std::sqrt(across * across + down * down));
    }
}

// The area in which the plate covers its shadows entirely: without its round corners and its outermost
// pixel, whose edge is smoothed and lined.
QRegion hiddenBy(const QRect& plate) {
    constexpr int corner = static_cast<int>(cornerRadius);
    return QRegion(plate.adjusted(corner, 1, -corner, -1)) + plate.adjusted(1, corner, -1, -corner) +
           plate.adjusted(withinCorners, withinCorners, -withinCorners, -withinCorners);
}

}  // namespace

Panel::Panel(const QString& title, QWidget* parent)
    : QWidget(parent)
    , inside(new OpaquePart(
          *this, [this](QPainter& painter, const QRegion& exposed) { drawPlate(painter, exposed); })) {
    setAccessibleName(title);
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(padding, padding, padding, padding);
    rows->setSpacing(rowSpacing);
    if (!title.isEmpty()) {
        header = new QHBoxLayout;
        auto* const name = new Caption(title, Theme::font(15, QFont::DemiBold, 3), Theme::text, this);
        name->setShadow(true);
        header->addWidget(name, 1);
        rows->addLayout(header);
    }
    body = new QVBoxLayout;
    body->setSpacing(18);
    rows->addLayout(body, 1);
}

void Panel::setTrailing(QWidget* view) { header->addWidget(view, 0, Qt::AlignRight | Qt::AlignVCenter); }

void Panel::reserveTitleRow(int height) { header->addStrut(height); }

void Panel::drawShadows(QPainter& painter, const QRectF& bounds) {
    const QRectF plate = Paint::snapped(painter, bounds);
    Paint::dropShadow(painter, plate, cornerRadius, {Theme::black(0.55), farBlur, farOffset});
    Paint::dropShadow(painter, plate, cornerRadius, {Theme::black(0.45), 4, 3});
}

void Panel::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    drawPlate(painter, event->region());
}

void Panel::drawPlate(QPainter& painter, const QRegion& exposed) {
    constexpr double lightReach = 520;
    constexpr int shaded = 35;  // width of the shaded edges
    painter.setRenderHint(QPainter::Antialiasing);
    surface.draw(
        painter, rect(), cornerRadius,
        {.color = [](double part) { return Paint::mixed(Theme::panelTop, Theme::panelBottom, part); },
         .light =
             [this](const QSize& size, int row, std::span<float> opacities) {
                 lightRow(lightReach * size.width() / width(), row, opacities);
             }});
    Paint::fit(painter, rect());
    if (!rect().adjusted(shaded, shaded, -shaded, -shaded).contains(exposed.boundingRect())) {
        Paint::innerShadow(painter, rect(), cornerRadius, {Theme::white(0.10), 3, 2});
        Paint::innerShadow(painter, rect(), cornerRadius, {Theme::black(0.35), 14, -10});
    }
    if (!(exposed - hiddenBy(rect())).isEmpty())
        Paint::edge(painter, rect(), cornerRadius, Theme::rim(rect()));
}

void Panel::showEvent(QShowEvent*) { hidden.stop(); }

// Who goes back to a page at once finds its plates as they were.
void Panel::hideEvent(QHideEvent*) {
    constexpr int milliseconds = 10'000;
    hidden.start(milliseconds, this);
}

void Panel::timerEvent(QTimerEvent*) {
    hidden.stop();
    surface.drop();
}

// The surface draws the shadows, which move with the panel.
void Panel::moveEvent(QMoveEvent*) { parentWidget()->update(); }

void Panel::resizeEvent(QResizeEvent*) {
    inside->setGeometry(rect().adjusted(withinCorners, withinCorners, -withinCorners, -withinCorners));
    parentWidget()->update();
}

// Meters and graphs inside of panels repaint the surface behind them many times a second. The plates
// cover the shadows there, so they are drawn only where they show.
void Surface::paintEvent(QPaintEvent* event) {
    std::vector<QRect> plates;
    for (QObject* const child : children())
        if (const auto* const panel = dynamic_cast<const Panel*>(child); panel && !panel->isHidden())
            plates.push_back(panel->geometry());
    QRegion exposed = event->region();
    for (const QRect& plate : plates)
        exposed -= hiddenBy(plate);

    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    for (const QRect& plate : plates) {
        const QRegion shaded = exposed & plate.adjusted(-shadowReach, -shadowReach, shadowReach, shadowReach);
        // One rectangle at a time, for which the toolkit starts no other threads.
        for (const QRect& part : shaded) {
            painter.setClipRect(part);
            Panel::drawShadows(painter, plate);
        }
    }
}

}  // namespace Kit
