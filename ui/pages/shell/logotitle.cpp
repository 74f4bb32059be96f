#include "ui/pages/shell/logotitle.hpp"

#include "ui/kit/shadows.hpp"
#include "ui/kit/symbols.hpp"
#include "ui/kit/text.hpp"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <cmath>
#include <utility>

namespace Corvane {

namespace {

constexpr int logoHeight = 42;
constexpr int gap = 14;
constexpr double titleSize = 26;
constexpr Qt::KeyboardModifiers secret = Qt::AltModifier | Qt::ControlModifier;

QString title() { return QStringLiteral("CORVANE"); }

Paint::TextStyle titleStyle() {
    return {Theme::titleFont(titleSize, 2), Theme::text, {Theme::black(0.5), 3, 2}, false};
}

double logoWidth() { return std::round(logoHeight * Symbols::logoAspect()); }

}  // namespace

LogoTitle::LogoTitle(QWidget* parent)
    : Control(parent) {
    const double width = logoWidth() + gap + Paint::textWidth(title(), titleStyle());
    setFixedSize(bleed + static_cast<int>(std::ceil(width)) + 2, logoHeight + 2 * bleed);
    setAccessibleName(title());
    setFocusPolicy(Qt::TabFocus);
}

Kit::Control::Outline LogoTitle::outline() const { return {QRectF(rect()).adjusted(1, 1, -1, -1), 8}; }

void LogoTitle::paint(QPainter& painter) {
    const QRectF logo(bleed, bleed, logoWidth(), logoHeight);
    const QBrush gradient = Theme::vertical(QRectF(QPointF(), logo.size()), Theme::rgb(1.0, 0.647, 0.322),
                                            Theme::rgb(0.871, 0.373, 0.102));
    Paint::softCopy(
        painter, QStringLiteral("logo"), logo, {Theme::faded(Theme::accent, 0.35), 6, 0},
        [&](QPainter& ink) { Symbols::drawLogo(ink, QRectF(QPointF(), logo.size()), Qt::black); });
    Symbols::drawLogo(painter, logo, gradient);
    Paint::text(painter, QRectF(rect()).adjusted(logo.right() + gap, 0, 0, 0),
                Qt::AlignLeft | Qt::AlignVCenter, title(), titleStyle());
}

void LogoTitle::mousePressEvent(QMouseEvent* event) {
    pressed = event->button() == Qt::LeftButton && (event->modifiers() & secret) == secret;
    event->setAccepted(pressed);
}

void LogoTitle::mouseReleaseEvent(QMouseEvent* event) {
    const bool clicked = std::exchange(pressed, false);
    event->setAccepted(clicked);
    if (clicked && rect().contains(event->position().toPoint()) && onSecretClick) onSecretClick();
}

void LogoTitle::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn || (event->modifiers() & secret) != secret || event->isAutoRepeat())
        return Control::keyPressEvent(event);
    if (onSecretClick) onSecretClick();
}

// The second press of two quick clicks.
void LogoTitle::mouseDoubleClickEvent(QMouseEvent* event) {
    mousePressEvent(event);
    event->accept();
}

}  // namespace Corvane
