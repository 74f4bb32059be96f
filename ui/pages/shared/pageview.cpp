#include "ui/pages/shared/pageview.hpp"

namespace Corvane {

namespace {

constexpr QMargins pageMargins(32, 24, 32, 24);

}  // namespace

PageView::PageView(QBoxLayout::Direction direction, QWidget* parent)
    : Surface(parent)
    , rows(new QBoxLayout(direction, this)) {
    rows->setContentsMargins(pageMargins);
    rows->setSpacing(panelGap);
}

void PageView::remember(QLayout* layout) {
    if (auto* const box = qobject_cast<QBoxLayout*>(layout))
        usual.push_back({box, box->contentsMargins(), box->spacing()});
}

void PageView::resizeEvent(QResizeEvent* event) {
    if (usual.empty()) {
        remember(rows);
        for (QObject* const child : children()) {
            if (auto* const panel = dynamic_cast<Kit::Panel*>(child)) {
                remember(panel->layout());
                remember(&panel->content());
            }
        }
    }
    const Room room = Room::in(window()->size());
    for (const auto& [layout, margins, spacing] : usual) {
        layout->setContentsMargins(margins.left(), room.eased(margins.top()), margins.right(),
                                   room.eased(margins.bottom()));
        layout->setSpacing(layout->direction() == QBoxLayout::TopToBottom ? room.eased(spacing) : spacing);
    }
    rows->activate();
    Surface::resizeEvent(event);
}

}  // namespace Corvane
