#include "ui/kit/wellmenu.hpp"

#include "ui/kit/accessibility.hpp"
#include "ui/kit/announcer.hpp"
#include "ui/kit/housestyle.hpp"
#include "ui/kit/shadows.hpp"
#include "ui/kit/symbols.hpp"
#include "ui/kit/text.hpp"

#include <QKeyEvent>
#include <QMouseEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Kit {

namespace {

constexpr int lineHeight = 16;
constexpr int horizontalPadding = 9;
constexpr int verticalPadding = 7;
constexpr double arrowSize = 8;
constexpr int listGap = 4;  // between the button and its list

}  // namespace

MenuButton::MenuButton(int width, QWidget* parent)
    : Button(parent) {
    setFixedSize(width, lineHeight + 2 * verticalPadding);
}

QString MenuButton::valueText() const { return shown; }

void MenuButton::setTitles(const QStringList& list) {
    titles = list;
    current.reset();
    update();
}

// Screen readers say nothing of a closed list that changes.
void MenuButton::setCurrent(std::optional<int> index) {
    const QString before = std::exchange(shown, index ? titles.at(*index) : QString());
    current = index;
    if (shown == before) return;
    stateChanged();
    if (hasFocus()) announce(*this, shown);
}

Parts::Part MenuButton::part(int index) const {
    return {.name = titles.at(index), .value = {}, .isCurrent = index == current, .place = {}, .number = {}};
}

// The program keeps running while the list is open: the button may be disabled, or destroyed with its
// window. The choice is therefore delivered by a queued call, after the list has closed.
void MenuButton::activate() {
    if (!isEnabled()) return;
    const int shadowRoom = static_cast<int>(std::lround(HouseStyle::shadowRoom * growth()));
    list = new QMenu(this);
    list->setAttribute(Qt::WA_DeleteOnClose);
    list->setAttribute(Qt::WA_NoMouseReplay);  // a press on the button closes the list
    list->setWindowFlag(Qt::NoDropShadowWindowHint);
    list->setMinimumWidth(width() + 2 * shadowRoom);
    for (int i = 0; i < titles.size(); ++i) {
        QAction* const entry = list->addAction(titles.at(i));
        connect(
            entry, &QAction::triggered, this, [this, i] { choose(i); }, Qt::QueuedConnection);
        entry->setCheckable(true);
        entry->setChecked(i == current);
    }
    connect(list, &QObject::destroyed, this, [this] { notifyExpanded(*this); });
    list->popup(mapToGlobal(QPoint(-shadowRoom, height() + listGap - shadowRoom)));
    list->setActiveAction(current ? list->actions().at(*current) : nullptr);
    notifyExpanded(*this);
}

void MenuButton::cancelInteraction() {
    Button::cancelInteraction();
    if (list) list->close();
}

void MenuButton::choose(int index) {
    if (isEnabled() && index < titles.size() && onIndex) onIndex(index);
}

void MenuButton::step(int by) {
    const int next = std::clamp(current.value_or(-1) + by, 0, static_cast<int>(titles.size()) - 1);
    if (!titles.isEmpty() && next != current) choose(next);
}

// The list opens while the mouse button is still held: its release over an entry chooses that.
void MenuButton::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) activate();
}

void MenuButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Down && (event->modifiers() & Qt::AltModifier) != 0) return activate();
    if (event->key() == Qt::Key_Up) return step(-1);
    if (event->key() == Qt::Key_Down) return step(1);
    Button::keyPressEvent(event);
}

void MenuButton::paint(QPainter& painter) {
    const QRectF field = Paint::snapped(painter, area());
    Paint::well(painter, field, 8);
    if (isHovered()) Paint::edge(painter, field, 8, Theme::white(0.14));
    const QRectF arrow(field.right() - horizontalPadding - arrowSize, field.center().y() - arrowSize / 2,
                       arrowSize, arrowSize);
    Symbols::draw(painter, QStringLiteral("chevron.down"), arrow, Theme::secondary);
    Paint::text(painter, field.adjusted(horizontalPadding, 0, -2 * horizontalPadding - arrowSize + 3, 0),
                Qt::AlignLeft | Qt::AlignVCenter, valueText(), {Theme::font(11), Theme::text, {}, false});
}

}  // namespace Kit
