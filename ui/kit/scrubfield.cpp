#include "ui/kit/scrubfield.hpp"

#include "ui/kit/shadows.hpp"
#include "ui/kit/text.hpp"

#include <QApplication>
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
    connect(editor, &QLineEdit::textEdited, this, &ScrubField::preview);
    editor->hide();
}

// A decimal comma is a point. Of what is no part of a number, only a k at the end counts, also before "Hz".
std::optional<double> ScrubField::parse(const QString& typed) {
    QString text = typed.toLower().replace(u',', u'.').replace(QChar(0x2212), u'-').trimmed();
    if (text.endsWith(QStringLiteral("hz"))) text = text.chopped(2).trimmed();
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
    const double change = base() * std::exp2(steps / semitonesPerOctave) - base();
    propose(base() + std::copysign(std::max(std::abs(change), step), change));
}

double ScrubField::fineArrow() const { return logarithmic ? fineFactor : ValueControl::fineArrow(); }

void ScrubField::beginEditing() {
    beginEditingWith(logarithmic ? QString::asprintf("%.0f", base()) : QString::asprintf("%g", base()));
    editor->selectAll();
}

// The application's events are watched for a press elsewhere, which need not move the focus.
void ScrubField::beginEditingWith(const QString& text) {
    editing = true;
    editor->setText(text);
    editor->show();
    editor->setFocus(Qt::OtherFocusReason);
    qApp->installEventFilter(this);
    update();
}

void ScrubField::endEditing(bool commit) {
    if (!editing) return;
    editing = false;
    qApp->removeEventFilter(this);
    tag.hide();
    const auto number = parse(editor->text());
    if (editor->hasFocus()) setFocus(Qt::OtherFocusReason);
    editor->hide();
    update();
    if (commit && number) propose(*number);
}

// In the order of the keyboard, past the keys and menus between the fields.
void ScrubField::editNeighbour(bool forward) {
    QWidget* next = this;
    do {
        next = forward ? next->nextInFocusChain() : next->previousInFocusChain();
        auto* const field = dynamic_cast<ScrubField*>(next);
        if (field && field != this && field->isEnabled() && field->isVisibleTo(window()))
            return field->beginEditing();
    } while (next != this);
}

void ScrubField::preview() {
    const auto number = parse(editor->text());
    if (!number) return tag.hide();
    const double next = legal(*number);
    const bool isLimited = *number < range.lower || *number > range.upper;
    tag.show(QStringLiteral("= ") + (logarithmic ? QString::asprintf("%.0f Hz", next) : format(next)),
             QRectF(rect()).center(), isLimited);
}

void ScrubField::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) beginEditing();
}

void ScrubField::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_F2) return beginEditing();
    if (key == Qt::Key_Home) return event->ignore();
    const QString text = event->text();
    if (text.size() == 1 && QStringView(u"0123456789.,+-\u2212").contains(text.front())) {
        beginEditingWith(text);
        return preview();
    }
    ValueControl::keyPressEvent(event);
}

bool ScrubField::leavesEditor(QKeyEvent& event) {
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        endEditing(true);
        return true;
    case Qt::Key_Escape:
        endEditing(false);
        return true;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        endEditing(true);
        editNeighbour(event.key() == Qt::Key_Tab);
        return true;
    default:
        return false;
    }
}

bool ScrubField::eventFilter(QObject* watched, QEvent* event) {
    if (watched == editor) {
        const bool left = event->type() == QEvent::FocusOut &&
                          static_cast<QFocusEvent*>(event)->reason() != Qt::PopupFocusReason;
        if (left) endEditing(true);
        if (event->type() == QEvent::KeyPress && leavesEditor(*static_cast<QKeyEvent*>(event))) return true;
    } else if (event->type() == QEvent::MouseButtonPress && watched->isWidgetType() &&
               static_cast<QWidget*>(watched)->window() == window()) {
        endEditing(true);
    }
    return ValueControl::eventFilter(watched, event);
}

void ScrubField::resizeEvent(QResizeEvent*) { editor->setGeometry(rect()); }

void ScrubField::paint(QPainter& painter) {
    const QRectF field = Paint::snapped(painter, rect());
    Paint::well(painter, field, 7);
    if (isEditing()) return Paint::edge(painter, field, 7, Theme::faded(Theme::accent, 0.6));
    if (isHovered() || isDragging()) Paint::edge(painter, field, 7, Theme::white(0.14));
    Paint::text(painter, QRectF(rect()).adjusted(padding, 0, -padding, 0), Qt::AlignCenter, valueText(),
                {Theme::font(11), Theme::text, {}, true});
}

}  // namespace Kit
