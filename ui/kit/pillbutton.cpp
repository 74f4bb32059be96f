#include "ui/kit/pillbutton.hpp"

#include "ui/kit/pictures.hpp"
#include "ui/kit/shadows.hpp"
#include "ui/kit/symbols.hpp"
#include "ui/kit/text.hpp"

#include <QEvent>

#include <algorithm>
#include <cmath>

namespace Kit {

namespace {

struct Measures {
    double font;
    double horizontal;
    double vertical;
    double icon;
};

Measures measuresOf(PillButton::Size size) {
    return size == PillButton::Size::compact ? Measures{11, 13, 7, 13} : Measures{13, 19, 10, 15};
}

constexpr double bezelWidth = 4;  // around the body
constexpr double iconGap = 6;

}  // namespace

PillButton::PillButton(const QString& title, Size size, QWidget* parent)
    : Button(parent)
    , size(size)
    , title(title) {
    setAccessibleName(title);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void PillButton::setTitle(const QString& text) {
    if (title == text) return;
    // The accessible name follows the title, unless the owner has given the button another one.
    if (accessibleName() == title) setAccessibleName(text);
    title = text;
    updateGeometry();
    update();
}

void PillButton::setIcon(const QString& symbol) {
    if (icon == symbol) return;
    icon = symbol;
    updateGeometry();
    update();
}

void PillButton::setOn(bool value) {
    if (on == value) return;
    on = value;
    stateChanged();
}

void PillButton::reserveFor(const QStringList& titles) {
    reserved = titles;
    updateGeometry();
}

double PillButton::labelWidth(const QString& text) const {
    const Measures m = measuresOf(size);
    const double words = Paint::textWidth(text, {Theme::font(m.font, QFont::DemiBold), {}, {}});
    return words + (icon.isEmpty() ? 0 : m.icon + iconGap);
}

QSize PillButton::sizeHint() const {
    const Measures m = measuresOf(size);
    double width = labelWidth(title);
    for (const QString& other : reserved)
        width = std::max(width, labelWidth(other));
    const double lineHeight = std::round(m.font * 1.25);
    return {static_cast<int>(std::ceil(growth() * (width + 2 * (m.horizontal + bezelWidth)))),
            static_cast<int>(std::ceil(growth() * (lineHeight + 2 * (m.vertical + bezelWidth))))};
}

Control::Outline PillButton::outline() const { return {area(), area().height() / 2}; }

void PillButton::paint(QPainter& painter) {
    const QRectF outer = area();
    const bool pushed = on || isPressed();
    const QString state =
        QStringLiteral("pill %1%2%3").arg(int(on)).arg(int(isPressed())).arg(int(isHovered()));
    Paint::cached(painter, state, outer, [&](QPainter& canvas) {
        Paint::fill(canvas, outer, outer.height() / 2, Theme::well);
        Paint::innerShadow(canvas, outer, outer.height() / 2, {Theme::black(0.75), 3, 2});
        const QRectF body = outer.adjusted(bezelWidth, bezelWidth, -bezelWidth, -bezelWidth);
        Paint::dropShadow(canvas, body, body.height() / 2,
                          pushed ? Paint::Shadow{Theme::black(0.3), 4, 0}
                                 : Paint::Shadow{Theme::black(0.6), 5, 1});
        Paint::trim(canvas, outer, outer.height() / 2);
        Paint::edge(canvas, outer, outer.height() / 2, Theme::recessRim(outer));
        drawBody(canvas, body);
    });
    drawLabel(painter, isPressed() ? outer.translated(0, 1 / Paint::ratioOf(painter)) : outer);
}

void PillButton::drawBody(QPainter& painter, const QRectF& body) const {
    const double radius = body.height() / 2;
    const bool pushed = on || isPressed();
    Paint::fill(painter, body, radius,
                pushed ? Theme::vertical(body, Theme::rgb(0.16, 0.17, 0.20), Theme::rgb(0.13, 0.14, 0.165))
                       : Theme::vertical(body, Theme::rgb(0.27, 0.285, 0.33), Theme::rgb(0.19, 0.20, 0.24)));
    const bool bright = isHovered() && !isPressed();
    if (bright) Paint::fill(painter, body, radius, Theme::white(0.07));
    if (isPressed()) Paint::innerShadow(painter, body, radius, {Theme::black(0.7), 5, 3});
    if (on) {
        Paint::innerShadow(painter, body, radius, {Theme::faded(Theme::accent, bright ? 0.32 : 0.18), 8, 0});
        Paint::edge(painter, body, radius, Theme::faded(Theme::accent, bright ? 0.8 : 0.45));
    } else if (isPressed()) {
        Paint::edge(painter, body, radius, Theme::recessRim(body));
    } else {
        Paint::edge(painter, body, radius, Theme::rim(body));
        if (bright)
            Paint::edge(painter, body, radius, Theme::vertical(body, Theme::white(0.2), Theme::white(0.04)));
    }
}

void PillButton::drawLabel(QPainter& painter, const QRectF& bounds) const {
    const Measures m = measuresOf(size);
    Paint::TextStyle style{Theme::font(m.font, QFont::DemiBold),
                           Theme::faded(Theme::text, isHovered() && !isPressed() ? 1 : 0.88),
                           {Theme::black(0.5), 1, 1}};
    if (on) {
        style.color = Theme::accent;
        style.shadow = {Theme::faded(Theme::accent, 0.6), 4, 0};
    }
    QRectF label(0, 0, labelWidth(title), bounds.height());
    label.moveCenter(bounds.center());
    if (!icon.isEmpty()) {
        QRectF place(label.left(), 0, m.icon, m.icon);
        place.moveTop(Paint::onPixelRow(painter, {0, bounds.center().y() - m.icon / 2}).y());
        place.moveLeft(std::round(place.left()));
        Symbols::draw(painter, icon, place, style.color, style.shadow);
        label.setLeft(label.left() + m.icon + iconGap);
    }
    Paint::text(painter, label.adjusted(0, 0, 1, 0), Qt::AlignLeft | Qt::AlignVCenter, title, style);
}

}  // namespace Kit
