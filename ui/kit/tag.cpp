#include "ui/kit/tag.hpp"

#include "ui/kit/accessibility.hpp"
#include "ui/kit/pictures.hpp"
#include "ui/kit/shadows.hpp"
#include "ui/kit/text.hpp"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace Kit {

namespace {

constexpr double tagHeight = 22;
constexpr double padding = 9;
constexpr double shadowMargin = 6;
constexpr double gap = 15;  // between the anchor and the tag: a handle with its ring fits in

}  // namespace

class Tag::Label final : public QWidget {
public:
    explicit Label(QWidget* window)
        : QWidget(window) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setRole(*this, QAccessible::ToolTip);
    }

    void setText(const QString& text, double growth, bool accent) {
        if (text == accessibleName() && growth == factor && accent == accented) return;
        setAccessibleName(text);
        factor = growth;
        accented = accent;
        const double width = std::ceil(Paint::textWidth(text, style())) + 2 * padding;
        resize((QSizeF(width + 2 * shadowMargin, tagHeight + 2 * shadowMargin) * factor).toSize());
        update();
    }

    void standAt(QPointF anchor) {
        const QRectF window = parentWidget()->rect();
        const double margin = shadowMargin * factor;
        QRectF tag = QRectF(rect()).adjusted(margin, margin, -margin, -margin);
        tag.moveCenter(anchor);
        tag.moveBottom(anchor.y() - gap * factor);
        if (tag.top() < window.top()) tag.moveTop(anchor.y() + gap * factor);
        tag.moveLeft(std::max(std::min(tag.left(), window.right() - tag.width()), window.left()));
        move((tag.topLeft() - QPointF(margin, margin)).toPoint());
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        painter.scale(factor, factor);
        const QRectF area(QPointF(), QSizeF(size()) / factor);
        const QRectF shape =
            Paint::snapped(painter, area.adjusted(shadowMargin, shadowMargin, -shadowMargin, -shadowMargin));
        constexpr double radius = 7;
        Paint::dropShadow(painter, shape, radius, {Theme::black(0.5), 4, 1});
        Paint::cached(painter, accented ? QStringLiteral("accented tag") : QStringLiteral("tag"), shape,
                      [&](QPainter& canvas) {
                          const QRectF local(QPointF(), shape.size());
                          Paint::fill(canvas, local, radius, Theme::panelTop);
                          Paint::edge(canvas, local, radius,
                                      accented ? Theme::faded(Theme::accent, 0.7) : Theme::white(0.2));
                      });
        Paint::text(painter, shape, Qt::AlignCenter, accessibleName(), style());
    }

private:
    Paint::TextStyle style() const {
        return {Theme::font(12, QFont::Medium), accented ? Theme::accent : Theme::text, {}, true};
    }

    double factor = 1;
    bool accented = false;
};

Tag::~Tag() { delete label; }

void Tag::show(const QString& text, QPointF anchor, bool accent) {
    QWidget* const window = owner->window();
    auto* shown = static_cast<Label*>(label.data());
    if (shown && shown->parentWidget() != window) {
        delete shown;
        shown = nullptr;
    }
    if (!shown) label = shown = new Label(window);
    shown->setText(text, owner->growth(), accent);
    shown->standAt(owner->mapTo(window, anchor));
    shown->raise();
    shown->show();
}

void Tag::hide() {
    if (label) label->hide();
}

}  // namespace Kit
