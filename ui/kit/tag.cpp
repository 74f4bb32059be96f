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

constexpr int tagHeight = 22;
constexpr int padding = 9;
constexpr int shadowMargin = 6;
constexpr double gap = 15;  // between the anchor and the tag: a handle with its ring fits in

}  // namespace

class Tag::Label final : public QWidget {
public:
    explicit Label(QWidget* window)
        : QWidget(window) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setRole(*this, QAccessible::ToolTip);
    }

    void setText(const QString& text, bool accent) {
        if (text == accessibleName() && accent == accented) return;
        setAccessibleName(text);
        accented = accent;
        const int width = static_cast<int>(std::ceil(Paint::textWidth(text, style()))) + 2 * padding;
        resize(width + 2 * shadowMargin, tagHeight + 2 * shadowMargin);
        update();
    }

    void standAt(QPointF anchor) {
        const QRectF window = parentWidget()->rect();
        QRectF tag = QRectF(rect()).adjusted(shadowMargin, shadowMargin, -shadowMargin, -shadowMargin);
        tag.moveCenter(anchor);
        tag.moveBottom(anchor.y() - gap);
        if (tag.top() < window.top()) tag.moveTop(anchor.y() + gap);
        tag.moveLeft(std::max(std::min(tag.left(), window.right() - tag.width()), window.left()));
        move((tag.topLeft() - QPointF(shadowMargin, shadowMargin)).toPoint());
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        const QRectF shape = Paint::snapped(
            painter, QRectF(rect()).adjusted(shadowMargin, shadowMargin, -shadowMargin, -shadowMargin));
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

    bool accented = false;
};

Tag::~Tag() { delete label; }

void Tag::show(const QString& text, QPointF anchor, bool accent) {
    QWidget* const window = owner->window();
    if (label && label->parentWidget() != window) delete label;
    if (!label) label = new Label(window);
    auto* const shown = static_cast<Label*>(label.data());
    shown->setText(text, accent);
    shown->standAt(owner->mapTo(window, anchor));
    shown->raise();
    shown->show();
}

void Tag::hide() {
    if (label) label->hide();
}

}  // namespace Kit
