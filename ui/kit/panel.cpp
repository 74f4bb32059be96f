#include "ui/kit/panel.hpp"

#include "ui/kit/painting.hpp"

#include <QPaintEvent>
#include <QRadialGradient>

#include <algorithm>
#include <cmath>
#include <vector>

namespace Kit {

namespace {

constexpr double cornerRadius = 30;
constexpr int padding = 26;
constexpr int rowSpacing = 22;
constexpr double farBlur = 34;
constexpr double farOffset = 26;
constexpr int shadowReach = static_cast<int>(1.5 * farBlur + farOffset);

void drawPlate(QPainter& painter, const QRectF& plate) {
    Paint::fill(painter, plate, cornerRadius, Theme::vertical(plate, Theme::panelTop, Theme::panelBottom));
    QRadialGradient light(plate.topLeft(), 520);
    light.setColorAt(0, Theme::white(0.07));
    light.setColorAt(1, Theme::white(0));
    Paint::fill(painter, plate, cornerRadius, light);
    Paint::innerShadow(painter, plate, cornerRadius, {Theme::white(0.10), 3, 2});
    Paint::innerShadow(painter, plate, cornerRadius, {Theme::black(0.35), 14, -10});
    Paint::edge(painter, plate, cornerRadius, Theme::rim(plate));
}

// What its plate hides of the shadows, under a pixel of its soft edge and but for its corners.
QRegion hiddenBy(const QRect& plate) {
    constexpr int corner = static_cast<int>(cornerRadius);
    return QRegion(plate.adjusted(corner, 1, -corner, -1)) + plate.adjusted(1, corner, -1, -corner);
}

}  // namespace

Panel::Panel(const QString& title, QWidget* parent)
    : QWidget(parent) {
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

void Panel::drawShadows(QPainter& painter, const QRectF& plate) {
    Paint::dropShadow(painter, plate, cornerRadius, {Theme::black(0.55), farBlur, farOffset});
    Paint::dropShadow(painter, plate, cornerRadius, {Theme::black(0.45), 4, 3});
}

void Panel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRectF plate = rect();
    Paint::cached(painter, QStringLiteral("panel"), plate, [&](QPainter& ink) { drawPlate(ink, plate); });
}

// The shadows move along, on all sides.
void Panel::moveEvent(QMoveEvent*) { parentWidget()->update(); }

void Panel::resizeEvent(QResizeEvent*) { parentWidget()->update(); }

// A meter inside a panel repaints every 60 ms, a graph with every move of the mouse; next to nothing
// of the shadows is to be seen there.
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
        if (shaded.isEmpty()) continue;
        painter.setClipRegion(shaded);
        Panel::drawShadows(painter, plate);
    }
}

Well::Well(double radius, QWidget* parent)
    : QWidget(parent)
    , radius(radius) {}

void Well::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Paint::well(painter, rect(), std::min(radius, height() / 2.0));
}

Caption::Caption(const QString& text, const QFont& font, const QColor& color, QWidget* parent)
    : QWidget(parent)
    , text(text)
    , font(font)
    , color(color) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setAccessibleName(text);
}

void Caption::setText(const QString& value) {
    if (text == value) return;
    const QSize before = sizeHint();
    text = value;
    setAccessibleName(value);
    if (sizeHint() != before) updateGeometry();
    update();
}

void Caption::setColor(const QColor& value) {
    color = value;
    update();
}

void Caption::reserveFor(const QString& value) {
    reserved = value;
    updateGeometry();
}

QSize Caption::sizeHint() const {
    const Paint::TextStyle style{font, color, {}, tabular};
    const double width = std::max(Paint::textWidth(text, style), Paint::textWidth(reserved, style));
    return {static_cast<int>(std::ceil(width)) + 1,
            static_cast<int>(std::ceil(QFontMetricsF(font).height()))};
}

// Long texts give way and are elided.
QSize Caption::minimumSizeHint() const {
    const Paint::TextStyle style{font, color, {}, tabular};
    return {static_cast<int>(std::ceil(Paint::textWidth(reserved, style))), sizeHint().height()};
}

void Caption::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Paint::Shadow shadow = shadowed ? Paint::Shadow{Theme::black(0.5), 2, 1} : Paint::Shadow{};
    Paint::text(painter, rect(), alignment, text, {font, color, shadow, tabular});
}

}  // namespace Kit
