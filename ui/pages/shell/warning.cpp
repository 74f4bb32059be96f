#include "ui/pages/shell/warning.hpp"

#include "ui/kit/shadows.hpp"
#include "ui/kit/symbols.hpp"

#include <algorithm>
#include <cmath>

namespace Corvane {

namespace {

constexpr int capsuleHeight = 26;
constexpr int padding = 10;
constexpr int signSize = 14;
constexpr int signGap = 6;
constexpr int besideText = 2 * padding + signSize + signGap;

}  // namespace

Warning::Warning(Kind kind, const QColor& color, int leastText, QWidget* parent)
    : Button(parent)
    , kind(kind)
    , color(color)
    , leastText(leastText) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setFocusPolicy(kind == Kind::dismissible ? Qt::StrongFocus : Qt::NoFocus);
    if (kind == Kind::dismissible) setCursor(Qt::PointingHandCursor);
    hide();
}

void Warning::setText(const QString& value) {
    if (text == value) return;
    text = value;
    setAccessibleName(value);
    setToolTip(value);
    setVisible(!value.isEmpty());
    updateGeometry();
    stateChanged();
}

QAccessible::Role Warning::accessibleRole() const {
    return kind == Kind::dismissible ? QAccessible::Button : QAccessible::StaticText;
}

int Warning::textWidth() const { return static_cast<int>(std::ceil(Paint::textWidth(text, style()))) + 1; }

QSize Warning::sizeHint() const { return {textWidth() + besideText, capsuleHeight}; }

QSize Warning::minimumSizeHint() const {
    return {std::min(textWidth(), leastText) + besideText, capsuleHeight};
}

Paint::TextStyle Warning::style() const {
    const bool lit = kind == Kind::dismissible && isHovered();
    return {Theme::font(13), lit ? color.lighter(115) : color, {}, false};
}

Kit::Control::Outline Warning::outline() const {
    return {QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), height() / 2.0};
}

void Warning::paint(QPainter& painter) {
    const QRectF capsule = rect();
    Paint::well(painter, capsule, capsule.height() / 2);
    const QRectF sign(padding, (capsuleHeight - signSize) / 2.0, signSize, signSize);
    Symbols::draw(painter, QStringLiteral("exclamationmark.triangle"), sign, style().color);
    Paint::text(painter, capsule.adjusted(padding + signSize + signGap, 0, -padding, 0),
                Qt::AlignLeft | Qt::AlignVCenter, text, style());
}

}  // namespace Corvane
