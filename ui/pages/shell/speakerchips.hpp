#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/animation.hpp"
#include "ui/kit/group.hpp"
#include "ui/kit/roving.hpp"

#include <QWidget>

#include <vector>

namespace Corvane {

class SpeakerChip;

/// A chip for each speaker; that of the target is selected. While there is a target and another
/// speaker, a chip "TODAS" follows, which takes the target away. When the row is too narrow, the model
/// names of all chips get shorter until only the addresses are left. Beyond that the row scrolls: by
/// the wheel, and by an arrow at each end at which chips are hidden.
class SpeakerChips final : public Kit::Group {
public:
    SpeakerChips(AppModel& model, QWidget* parent);

    /// Wide enough for all names, and for the addresses only.
    QSize sizeHint() const override { return {rowWidth(unlimited), height()}; }
    int shortWidth() const { return rowWidth(0); }

    /// The width that the chips take when there is that much room.
    int widthWithin(int room) const;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    class More;

    static constexpr int unlimited = 10000;  // wider than any name

    void showSpeakers(const Speakers& speakers);
    void showAllChip(bool visible);
    SpeakerChip* chipFor(const std::shared_ptr<Speaker>& speaker);
    int rowWidth(int nameWidth) const;
    int nameWidthFor(int room) const;
    int allWidth() const;      // with the gap before it; 0 while it is hidden
    int contentWidth() const;  // of what scrolls
    void arrange();
    void place();
    void scrollTo(double offset);
    void reveal(const QWidget& chip);

    AppModel& model;
    QWidget* opening;  // through which the chips are seen
    std::vector<SpeakerChip*> chips;
    SpeakerChip* all;
    More* before;
    More* after;
    bool pinned = true;  // TODAS stands beside the opening, instead of scrolling with the chips
    double wanted = 0;   // where `offset` moves to
    Kit::Roving roving{0, Kit::Roving::Choice::moves, this};
    Kit::Animation offset;  // how far the row is scrolled
};

}  // namespace Corvane
