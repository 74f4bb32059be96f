#include "ui/kit/focusring.hpp"

#include "ui/kit/shadows.hpp"

#include <QEvent>

#include <utility>

namespace Kit {

namespace {

constexpr double distance = 2;
constexpr double lineWidth = 1.5;
constexpr double reach = distance + lineWidth;

}  // namespace

// It covers its owner and the ring around it.
class FocusRing::Overlay final : public QWidget {
public:
    explicit Overlay(QWidget* window)
        : QWidget(window) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

    void surround(const Outline& outline) {
        const QRectF place = outline.shape.adjusted(-reach, -reach, reach, reach);
        setGeometry(place.toAlignedRect());
        ring = {place.translated(-pos()), outline.radius + reach};
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        Paint::edge(painter, Paint::snapped(painter, ring.shape), ring.radius, Theme::white(0.75), lineWidth);
    }

private:
    Outline ring;
};

FocusRing::FocusRing(QWidget& owner, std::function<Outline()> outline)
    : owner(owner)
    , outline(std::move(outline)) {}

FocusRing::~FocusRing() { delete overlay; }

void FocusRing::show() {
    if (overlay) return;
    auto* const shown = new Overlay(owner.window());
    overlay = shown;
    for (QWidget* each = &owner; each; each = each->isWindow() ? nullptr : each->parentWidget())
        each->installEventFilter(this);
    place();
    shown->raise();
    shown->show();
}

void FocusRing::hide() {
    delete overlay;
    for (QWidget* each = &owner; each; each = each->parentWidget())
        each->removeEventFilter(this);
}

bool FocusRing::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::Move || event->type() == QEvent::Resize) place();
    return false;
}

void FocusRing::place() {
    if (!overlay) return;
    Outline around = outline();
    around.shape.translate(owner.mapTo(owner.window(), QPoint()));
    static_cast<Overlay*>(overlay.data())->surround(around);
}

}  // namespace Kit
