#include "ui/kit/housestyle.hpp"

#include "ui/kit/compositing.hpp"
#include "ui/kit/control.hpp"
#include "ui/kit/shadows.hpp"
#include "ui/kit/symbols.hpp"
#include "ui/kit/text.hpp"

#include <QEvent>
#include <QMenu>
#include <QPainterPath>
#include <QStyleOption>

#include <cmath>

namespace Kit {

namespace {

// In the usual size.
constexpr double cornerRadius = 10;
constexpr int menuPadding = 5;
constexpr int tipPadding = 6;
constexpr int entryHeight = 26;
constexpr int separatorHeight = 9;
constexpr int markRoom = 24;  // at the left of an entry
constexpr int endRoom = 14;   // at its right
constexpr double markSize = 11;

bool isTip(const QWidget* widget) { return widget && widget->inherits("QTipLabel"); }

// The owner of a menu is its parent, as is the widget that a tip explains.
double growthOfOwner(const QWidget& popup) {
    const auto* const owner = dynamic_cast<const Control*>(popup.parentWidget());
    return owner ? owner->growth() : 1;
}

// Menus and tips are as large as their font has grown.
double growthOf(const QWidget* popup) {
    return popup ? popup->font().pointSizeF() / Theme::font(HouseStyle::fontSize).pointSizeF() : 1;
}

int grown(double length, const QWidget* popup) {
    return static_cast<int>(std::lround(length * growthOf(popup)));
}

QRectF panelIn(const QRectF& bounds) {
    constexpr int room = HouseStyle::shadowRoom;
    return bounds.adjusted(room, room - 2, -room, -room - 2);
}

QRectF usual(const QRectF& bounds, double growth) {
    return {bounds.topLeft() / growth, bounds.size() / growth};
}

void drawPanel(QPainter& painter, const QRectF& bounds) {
    const QRectF panel = Paint::snapped(painter, panelIn(bounds));
    Paint::dropShadow(painter, panel, cornerRadius, {Theme::black(0.6), 6, 3});
    Paint::fill(painter, panel, cornerRadius, Theme::vertical(panel, Theme::panelTop, Theme::panelBottom));
    Paint::edge(painter, panel, cornerRadius, Theme::rim(panel));
}

void drawEntry(QPainter& painter, const QRectF& place, const QStyleOptionMenuItem& entry) {
    const bool enabled = entry.state & QStyle::State_Enabled;
    if (entry.menuItemType == QStyleOptionMenuItem::Separator)
        return painter.fillRect(QRectF(place.left() + 8, place.center().y(), place.width() - 16, 1),
                                Theme::white(0.1));
    if (enabled && (entry.state & QStyle::State_Selected)) {
        const QRectF bar = Paint::snapped(painter, place);
        Paint::fill(painter, bar, 6, Theme::accentSoft);
        Paint::edge(painter, bar, 6, Theme::faded(Theme::accent, 0.35));
    }
    QRectF mark(0, 0, markSize, markSize);
    mark.moveCenter({place.left() + markRoom / 2.0, place.center().y()});
    if (entry.checked) Symbols::draw(painter, QStringLiteral("checkmark"), mark, Theme::accent);
    const Paint::TextStyle style{Theme::font(HouseStyle::fontSize),
                                 enabled ? Theme::text : Theme::faded(Theme::secondary, 0.6)};
    const QStringList parts = QString(entry.text).remove(u'&').split(u'\t');
    const QRectF line = place.adjusted(markRoom, 0, -endRoom, 0);
    Paint::text(painter, line, Qt::AlignLeft, parts.front(), style);
    if (parts.size() > 1) {
        Paint::TextStyle faint = style;
        faint.color = Theme::secondary;
        Paint::text(painter, line, Qt::AlignRight, parts.back(), faint);
    }
    if (entry.menuItemType == QStyleOptionMenuItem::SubMenu) {
        mark.moveRight(place.right() - 4);
        Symbols::draw(painter, QStringLiteral("chevron.right"), mark, Theme::secondary);
    }
}

// `draw` gets the rectangle in the usual size.
template <class Draw>
void drawGrown(QPainter& painter, const QWidget* popup, const QRectF& bounds, Draw draw) {
    const double growth = growthOf(popup);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(growth, growth);
    draw(usual(bounds, growth));
    painter.restore();
}

}  // namespace

HouseStyle::HouseStyle()
    : QProxyStyle(QStringLiteral("Fusion")) {}

void HouseStyle::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    if (!isTip(widget) && !qobject_cast<QMenu*>(widget)) return;
    widget->setAttribute(Qt::WA_TranslucentBackground);
    widget->setFont(Theme::grown(Theme::font(fontSize), growthOfOwner(*widget)));
    widget->installEventFilter(this);
}

bool HouseStyle::eventFilter(QObject* watched, QEvent* event) {
    const bool changes = event->type() == QEvent::Show || event->type() == QEvent::Resize;
    if (changes && !isComposited()) {
        auto* const popup = static_cast<QWidget*>(watched);
        const double growth = growthOf(popup);
        QPainterPath shape;
        shape.addRoundedRect(panelIn(usual(popup->rect(), growth)), cornerRadius, cornerRadius);
        const QPolygonF outline = QTransform::fromScale(growth, growth).map(shape.toFillPolygon());
        popup->setMask(QRegion(outline.toPolygon()));
    }
    return QProxyStyle::eventFilter(watched, event);
}

int HouseStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    switch (metric) {
    case PM_MenuPanelWidth:
        return 0;
    case PM_MenuHMargin:
    case PM_MenuVMargin:
        return grown(shadowRoom + menuPadding, widget);
    case PM_ToolTipLabelFrameWidth:
        return grown(shadowRoom + tipPadding, widget);
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

QSize HouseStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                   const QWidget* widget) const {
    const auto* const entry = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (type != CT_MenuItem || !entry) return QProxyStyle::sizeFromContents(type, option, size, widget);
    if (entry->menuItemType == QStyleOptionMenuItem::Separator)
        return {size.width(), grown(separatorHeight, widget)};
    const bool hasShortcut = entry->text.contains(u'\t');
    const int besideText = markRoom + endRoom + (hasShortcut ? 2 * endRoom : 0);
    return {size.width() + grown(besideText, widget), grown(entryHeight, widget)};
}

void HouseStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
    switch (element) {
    case PE_PanelMenu:
    case PE_PanelTipLabel:
        return drawGrown(*painter, widget, option->rect,
                         [painter](const QRectF& bounds) { drawPanel(*painter, bounds); });
    case PE_FrameMenu:
        return;
    default:
        return QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void HouseStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                             const QWidget* widget) const {
    const auto* const entry = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (element == CE_MenuItem && entry)
        return drawGrown(*painter, widget, option->rect,
                         [painter, entry](const QRectF& place) { drawEntry(*painter, place, *entry); });
    if (element == CE_MenuEmptyArea) return;
    QProxyStyle::drawControl(element, option, painter, widget);
}

}  // namespace Kit
