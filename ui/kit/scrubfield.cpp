#include "ui/kit/scrubfield.hpp"

#include "ui/kit/shadows.hpp"
#include "ui/kit/text.hpp"

#include <QKeyEvent>
#include <QLineEdit>
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
    , logarithmic(look.logarithmic)
    , editor(new QLineEdit(this)) {
    setAccessibleName(name);
    setFixedSize(look.width, fieldHeight);
    setCursor(Qt::SizeHorCursor);
    editor->setFrame(false);
    editor->setFont(Theme::font(11));
    editor->setTextMargins(padding - 2, 0, padding - 2, 0);
    editor->setAccessibleName(name);
    editor->setStyleSheet(
        QStringLiteral("background: transparent; color: %1; selection-background-color: %2;")
            .arg(Theme::text.name(), Theme::accent.name()));
    editor->installEventFilter(this);
    editor->hide();
}

std::optional<double> ScrubField::parse(const QString& typed) {
    QString text = typed.trimmed().toLower().replace(u',', u'.');
    const double multiplier = text.endsWith(u'k') ? 1000 : 1;
    text.removeIf([](QChar c) { return !QStringView(u"0123456789.-").contains(c); });
    bool valid = false;
    const double number = text.toDouble(&valid);
    return valid ? std::optional(number * multiplier) : std::nullopt;
}

double ScrubField::dragged(double start, QPointF translation, Qt::KeyboardModifiers modifiers) const {
    const double delta = factorFor(modifiers) * (translation.x() - translation.y());
    return logarithmic ? start * std::exp2(delta / pointsPerOctave)
                       : start + delta * stepsPerPoint * stepSize();
}

// A logarithmic field steps by semitones, but at least by `step`: rounding would undo a smaller change.
void ScrubField::moveBySteps(double steps) {
    if (!logarithmic) return ValueControl::moveBySteps(steps);
    const double change = value() * std::exp2(steps / semitonesPerOctave) - value();
    propose(value() + std::copysign(std::max(std::abs(change), step), change));
}

double ScrubField::fineArrow() const { return logarithmic ? fineFactor : ValueControl::fineArrow(); }

void ScrubField::beginEditing() {
    editing = true;
    editor->setText(logarithmic ? QString::asprintf("%.0f", value()) : QString::asprintf("%g", value()));
    editor->show();
    editor->setFocus(Qt::OtherFocusReason);
    editor->selectAll();
    update();
}

void ScrubField::endEditing(bool commit) {
    if (!editing) return;
    editing = false;
    const auto number = parse(editor->text());
    if (editor->hasFocus()) setFocus(Qt::OtherFocusReason);
    editor->hide();
    update();
    if (commit && number) propose(*number);
}

void ScrubField::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) beginEditing();
}

void ScrubField::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_F2) return beginEditing();
    if (key == Qt::Key_Home) return event->ignore();
    ValueControl::keyPressEvent(event);
}

bool ScrubField::eventFilter(QObject* watched, QEvent* event) {
    const bool left = event->type() == QEvent::FocusOut &&
                      static_cast<QFocusEvent*>(event)->reason() != Qt::PopupFocusReason;
    if (left) endEditing(true);
    if (event->type() != QEvent::KeyPress) return ValueControl::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    const bool returned = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (!returned && key != Qt::Key_Escape) return ValueControl::eventFilter(watched, event);
    endEditing(returned);
    return true;
}

void ScrubField::resizeEvent(QResizeEvent*) { editor->setGeometry(rect()); }

void ScrubField::paint(QPainter& painter) {
    Paint::well(painter, rect(), 7);
    if (isEditing()) return Paint::edge(painter, rect(), 7, Theme::faded(Theme::accent, 0.6));
    if (isHovered() || isDragging()) Paint::edge(painter, rect(), 7, Theme::white(0.14));
    Paint::text(painter, QRectF(rect()).adjusted(padding, 0, -padding, 0), Qt::AlignCenter, valueText(),
                {Theme::font(11), Theme::text, {}, true});
}

}  // namespace Kit
