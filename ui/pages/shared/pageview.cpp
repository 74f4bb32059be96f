#include "ui/pages/shared/pageview.hpp"

#include <algorithm>
#include <cmath>

namespace Corvane {

namespace {

constexpr QMargins pageMargins(32, 24, 32, 24);
constexpr double tightShare = 0.6;  // of a gap that is left in the lowest window

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

std::vector<Kit::Panel*> PageView::panelsOfPage() const {
    std::vector<Kit::Panel*> found;
    for (QObject* const child : children())
        if (auto* const panel = dynamic_cast<Kit::Panel*>(child)) found.push_back(panel);
    return found;
}

void PageView::resizeEvent(QResizeEvent* event) {
    if (usual.empty()) {
        remember(rows);
        for (Kit::Panel* const panel : panelsOfPage()) {
            remember(panel->layout());
            remember(&panel->content());
        }
    }
    growth.undo();
    const Room room = Room::in(window()->size());
    const auto eased = [&room](int gap) {
        return room.between(static_cast<int>(std::lround(tightShare * gap)), gap);
    };
    for (const auto& [layout, margins, spacing] : usual) {
        layout->setContentsMargins(margins.left(), eased(margins.top()), margins.right(),
                                   eased(margins.bottom()));
        layout->setSpacing(layout->direction() == QBoxLayout::TopToBottom ? eased(spacing) : spacing);
    }
    const int head = window()->height() - height() - room.above;
    const double tall = (height() - room.above) / room.growth;
    spend(std::max(0, static_cast<int>(tall) - (Room::usual.height() - head)));
    // The margins of the page are those of the header.
    const QMargins margins = rows->contentsMargins();
    growth.apply(room.growth);
    rows->setContentsMargins(margins + QMargins(room.beside, 0, room.beside, room.above));
    growth.settle();
    rows->activate();
    Surface::resizeEvent(event);
}

}  // namespace Corvane
