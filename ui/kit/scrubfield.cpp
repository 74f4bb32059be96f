#include "ui/kit/scrubfield.hpp"

#include "ui/kit/formats.hpp"
#include "ui/kit/shadows.hpp"
#include "ui/kit/text.hpp"

#include <QKeyEvent>
#include <QMouseEvent>

#include <algorithm>
#include <cmath>

namespace Kit {

namespace {

constexpr int fieldHeight = 24;
constexpr int padding = 7;
constexpr double stepsPerPoint = 0.25;
constexpr double pointsPerOctave = 90;
constexpr double semitonesPerOctave = 12;

}  // namespace

ScrubField::ScrubField(const QString& name, Range range, Format format, const Look& look, QWidget* parent)
    : ValueControl(range, range.lower, look.step, std::move(format), parent)
    , logarithmic(look.logarithmic) {
    setAccessibleName(name);
    if (logarithmic) spokenFormat = Formats::spokenHz;
    setFixedSize(look.width, fieldHeight);
    setCursor(Qt::SizeHorCursor);
}

double ScrubField::dragged(double start, QPointF translation, Qt::KeyboardModifiers modifiers) const {
    const double delta = factorFor(modifiers) * (translation.x() - translation.y());
    return logarithmic ? start * std::exp2(delta / pointsPerOctave)
                       : start + delta * stepsPerPoint * stepSize();
}

// A logarithmic field steps by semitones, but at least by `step`: rounding would undo a smaller change.
void ScrubField::moveBySteps(double steps) {
    if (!logarithmic) return ValueControl::moveBySteps(steps);
    const double change = base() * std::exp2(steps / semitonesPerOctave) - base();
    propose(base() + std::copysign(std::max(std::abs(change), step), change));
}

double ScrubField::fineArrow() const { return logarithmic ? fineFactor : ValueControl::fineArrow(); }

void ScrubField::editValue() { beginEditing(QString::asprintf(logarithmic ? "%.0f" : "%g", base()), true); }

QString ScrubField::typedText(double value) const {
    return logarithmic ? Formats::spokenHz(value) : format(value);
}

// In the order of the keyboard, past the keys and menus between the fields.
void ScrubField::leaveEditor(bool forward) {
    const auto after = [forward](QWidget* one) {
        return forward ? one->nextInFocusChain() : one->previousInFocusChain();
    };
    for (QWidget* next = after(this); next && next != this; next = after(next))
        if (auto* const field = dynamic_cast<ScrubField*>(next);
            field && field->isEnabled() && field->isVisibleTo(window()))
            return field->editValue();
}

void ScrubField::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) editValue();
}

// A field has no default, and its highest value is of no use.
void ScrubField::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_F2:
        return editValue();
    case Qt::Key_Home:
    case Qt::Key_End:
        return event->ignore();
    default:
        ValueControl::keyPressEvent(event);
    }
}

void ScrubField::paint(QPainter& painter) {
    const QRectF field = Paint::snapped(painter, area());
    Paint::well(painter, field, 7);
    if (isEditing()) return Paint::edge(painter, field, 7, Theme::faded(Theme::accent, 0.6));
    if (isHovered() || isDragging()) Paint::edge(painter, field, 7, Theme::white(0.14));
    Paint::text(painter, area().adjusted(padding, 0, -padding, 0), Qt::AlignCenter, valueText(),
                {Theme::font(11), Theme::text, {}, true});
}

}  // namespace Kit
