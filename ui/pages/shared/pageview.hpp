#pragma once

#include "ui/pages/shared/growth.hpp"
#include "ui/pages/shared/room.hpp"

#include "ui/kit/panel.hpp"

#include <vector>

namespace Corvane {

/// A page of the window: panels with margins around them, which follow the room in the window. The page
/// lays out its panels, and the panels their content, with box layouts.
class PageView : public Kit::Surface {
public:
    /// `direction`: in which the panels follow each other.
    PageView(QBoxLayout::Direction direction, QWidget* parent);

protected:
    static constexpr int panelGap = 24;

    QBoxLayout& panels() { return *rows; }
    void resizeEvent(QResizeEvent* event) override;

    /// Called at each new size with what the page is higher than usual, before it grows: it gives this to
    /// its graph and to the tracks of its faders.
    virtual void spend(int /*height*/) {}

private:
    struct Gaps {
        QBoxLayout* layout;
        QMargins margins;
        int spacing;
    };

    void remember(QLayout* layout);
    std::vector<Kit::Panel*> panelsOfPage() const;

    QBoxLayout* rows;
    std::vector<Gaps> usual;  // of page and panels
    Growth growth{*this};
};

}  // namespace Corvane
