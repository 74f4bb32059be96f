#include "ui/kit/tabs.hpp"

#include "ui/kit/roving.hpp"
#include "ui/kit/shadows.hpp"
#include "ui/kit/text.hpp"

#include <QHBoxLayout>

#include <cmath>

namespace Kit {

namespace {

constexpr int verticalPadding = 9;
constexpr int lineHeight = 15;
constexpr int inset = 3;  // of the tabs in their capsule

QFont titleFont() { return Theme::font(12, QFont::DemiBold, 1.2); }

}  // namespace

Tab::Tab(const QString& title, const QColor& color, int padding, QWidget* parent)
    : Button(parent)
    , title(title)
    , color(color) {
    setAccessibleName(title);
    const double width = Paint::textWidth(title, {titleFont(), {}, {}, false});
    setFixedSize(static_cast<int>(std::ceil(width)) + 2 * padding, lineHeight + 2 * verticalPadding);
}

void Tab::setSelected(bool value) {
    if (selected == value) return;
    selected = value;
    stateChanged();
}

Control::Outline Tab::outline() const { return {area(), area().height() / 2}; }

void Tab::paint(QPainter& painter) {
    const QRectF capsule = Paint::snapped(painter, area());
    if (selected)
        Paint::fillKept(painter, capsule, capsule.height() / 2, Theme::white(0.09));
    else if (isPressed())
        Paint::fillKept(painter, capsule, capsule.height() / 2, Theme::black(0.35));
    else if (isHovered())
        Paint::fillKept(painter, capsule, capsule.height() / 2, Theme::white(0.055));
    Paint::text(painter, capsule, Qt::AlignCenter, title,
                {titleFont(), selected ? Theme::accent : color, {}, false});
}

Tabs::Tabs(const QStringList& titles, const QColor& color, int padding, QWidget* parent)
    : QWidget(parent) {
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(inset, inset, inset, inset);
    row->setSpacing(2);
    for (int i = 0; i < titles.size(); ++i) {
        auto* const tab = new Tab(titles.at(i), color, padding, this);
        tab->action = [this, i] {
            if (onSelect) onSelect(i);
        };
        row->addWidget(tab);
        tabs.push_back(tab);
    }
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAccessibleName(QStringLiteral("Páginas"));
    (new Roving(0, Roving::Choice::moves, this))->setControls({tabs.begin(), tabs.end()});
}

// When a widget that has the focus is hidden, the toolkit gives the focus to another one as if the user
// had pressed Tab, and a focus ring appears there. Without a focus to pass on it does not.
void Tabs::setVisible(bool visible) {
    if (QWidget* const focused = focusWidget(); !visible && focused) focused->clearFocus();
    QWidget::setVisible(visible);
}

void Tabs::setSelected(int index) {
    for (std::size_t i = 0; i < tabs.size(); ++i)
        tabs[i]->setSelected(static_cast<int>(i) == index);
}

void Tabs::setTips(const QStringList& tips) {
    for (std::size_t i = 0; i < tabs.size(); ++i)
        tabs[i]->setToolTip(tips.at(static_cast<int>(i)));
}

void Tabs::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    Paint::well(painter, rect(), height() / 2.0);
}

}  // namespace Kit
