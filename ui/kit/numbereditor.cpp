#include "ui/kit/numbereditor.hpp"

#include "ui/kit/accessibility.hpp"
#include "ui/kit/announcer.hpp"
#include "ui/kit/theme.hpp"
#include "ui/kit/valuecontrol.hpp"

#include <QApplication>
#include <QKeyEvent>

namespace Kit {

namespace {

constexpr int padding = 5;

}  // namespace

NumberEditor::NumberEditor(ValueControl& control)
    : QLineEdit(&control)
    , control(control)
    , tag(&control) {
    setFrame(false);
    setGrowth(1);
    setTextMargins(padding, 0, padding, 0);
    setAlignment(Qt::AlignCenter);
    setStyleSheet(QStringLiteral("background: transparent; color: %1; selection-background-color: %2;")
                      .arg(Theme::text.name(), Theme::accent.name()));
    connect(this, &QLineEdit::textEdited, this, [this] { preview(); });
    hide();
}

void NumberEditor::setGrowth(double factor) { setFont(Theme::font(11 * factor)); }

// A decimal comma is a point. Of what is no part of a number, only a k at the end counts, also before "Hz".
std::optional<double> NumberEditor::parse(const QString& typed) {
    QString text = typed.toLower().replace(u',', u'.').replace(QChar(0x2212), u'-').trimmed();
    if (text.endsWith(QStringLiteral("hz"))) text = text.chopped(2).trimmed();
    const double multiplier = text.endsWith(u'k') ? 1000 : 1;
    text.removeIf([](QChar c) { return !QStringView(u"0123456789.-").contains(c); });
    bool valid = false;
    const double number = text.toDouble(&valid);
    return valid ? std::optional(number * multiplier) : std::nullopt;
}

// The application's events are watched for a press elsewhere, which need not move the focus. The text comes
// after the focus: a screen reader that hears of a text first does not say the name of the field.
void NumberEditor::begin(const QString& text, const QRect& place, bool replaces) {
    active = true;
    setAccessibleName(fullName(control));
    setGeometry(place);
    show();
    setFocus(Qt::OtherFocusReason);
    setText(text);
    qApp->installEventFilter(this);
    if (replaces)
        selectAll();
    else
        preview();
    control.update();
}

void NumberEditor::end(bool commits) {
    if (!active) return;
    active = false;
    qApp->removeEventFilter(this);
    tag.hide();
    const auto number = parse(text());
    if (hasFocus()) control.setFocus(Qt::OtherFocusReason);
    hide();
    control.update();
    if (commits && number) commit(*number);
}

bool NumberEditor::isLimited(double number) const {
    return number < control.shownNumber(control.range.lower) ||
           number > control.shownNumber(control.range.upper);
}

void NumberEditor::commit(double number) {
    const double value = control.fromShown(number);
    if (isLimited(number))
        announce(control, text() + QStringLiteral(" → ") + control.format(control.legal(value)));
    control.propose(value);
}

void NumberEditor::preview() {
    const auto number = parse(text());
    if (!number) return tag.hide();
    const QString value = control.typedText(control.legal(control.fromShown(*number)));
    tag.show(QStringLiteral("= ") + value, QRectF(geometry()).center(), isLimited(*number));
}

bool NumberEditor::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress && watched != this && watched->isWidgetType() &&
        static_cast<QWidget*>(watched)->window() == window())
        end(true);
    return QLineEdit::eventFilter(watched, event);
}

// Tab does not come as a key press to a widget.
bool NumberEditor::event(QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Tab || key == Qt::Key_Backtab) {
            end(true);
            if (onTab) onTab(key == Qt::Key_Tab);
            return true;
        }
    }
    return QLineEdit::event(event);
}

void NumberEditor::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return end(true);
    case Qt::Key_Escape:
        return end(false);
    default:
        QLineEdit::keyPressEvent(event);
    }
}

void NumberEditor::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason) end(true);
}

}  // namespace Kit
