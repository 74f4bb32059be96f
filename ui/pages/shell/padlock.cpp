#include "ui/pages/shell/padlock.hpp"

#include "ui/kit/shadows.hpp"
#include "ui/kit/symbols.hpp"
#include "ui/kit/text.hpp"

#include <QKeyEvent>

#include <cmath>

namespace Corvane {

namespace {

constexpr int capsuleHeight = 30;
constexpr int padding = 9;
constexpr int signSize = 14;
constexpr int signGap = 5;
constexpr int holdMs = 1000;

QString word() { return QStringLiteral("Travado"); }

Paint::TextStyle wordStyle() { return {Theme::font(12, QFont::DemiBold), Theme::text, {}, false}; }

}  // namespace

Padlock::Padlock(QWidget* parent)
    : Button(parent) {
    setAccessibleName(word());
    setToolTip(QStringLiteral("Segure por um segundo, ou use Ctrl+L, para destravar"));
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    hold.setStartValue(0.0);
    hold.setEndValue(1.0);
    hold.setDuration(holdMs);
    connect(&hold, &QVariantAnimation::valueChanged, this, [this] { update(); });
    connect(&hold, &QVariantAnimation::finished, this, [this] {
        cancelInteraction();
        activate();
    });
}

QSize Padlock::sizeHint() const {
    const double text = std::ceil(Paint::textWidth(word(), wordStyle()));
    return {minimumSizeHint().width() + signGap + static_cast<int>(text) + 2, capsuleHeight};
}

QSize Padlock::minimumSizeHint() const { return {2 * padding + signSize, capsuleHeight}; }

Kit::Control::Outline Padlock::outline() const {
    return {QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), height() / 2.0};
}

void Padlock::paint(QPainter& painter) {
    const QRectF capsule = rect();
    const double radius = capsule.height() / 2;
    Paint::well(painter, capsule, radius);
    if (hold.state() == QAbstractAnimation::Running) {
        painter.save();
        painter.setClipRect(QRectF(0, 0, width() * hold.currentValue().toDouble(), height()));
        Paint::fill(painter, capsule, radius, Theme::faded(Theme::accent, 0.4));
        painter.restore();
    }
    Paint::edge(painter, capsule, radius, Theme::faded(Theme::accent, isHovered() ? 0.8 : 0.5));
    const QRectF sign(padding, (capsuleHeight - signSize) / 2.0, signSize, signSize);
    Symbols::draw(painter, QStringLiteral("lock.fill"), sign, Theme::accent);
    const QRectF room = capsule.adjusted(padding + signSize + signGap, 0, 0, 0);
    if (room.width() >= Paint::textWidth(word(), wordStyle()))
        Paint::text(painter, room, Qt::AlignLeft | Qt::AlignVCenter, word(), wordStyle());
}

// The button beneath forgets the press, so that the release does not act.
void Padlock::cancelInteraction() {
    hold.stop();
    Button::cancelInteraction();
}

// A pointer that leaves the button and returns begins anew.
void Padlock::followPress() {
    if (!isPressed())
        hold.stop();
    else if (hold.state() != QAbstractAnimation::Running)
        hold.start();
}

void Padlock::mousePressEvent(QMouseEvent* event) {
    Button::mousePressEvent(event);
    followPress();
}

void Padlock::mouseMoveEvent(QMouseEvent* event) {
    Button::mouseMoveEvent(event);
    followPress();
}

void Padlock::mouseReleaseEvent(QMouseEvent*) { cancelInteraction(); }

void Padlock::keyPressEvent(QKeyEvent* event) {
    Button::keyPressEvent(event);
    followPress();
}

void Padlock::keyReleaseEvent(QKeyEvent* event) {
    if (!event->isAutoRepeat()) cancelInteraction();
}

}  // namespace Corvane
