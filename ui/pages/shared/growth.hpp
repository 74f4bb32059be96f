#pragma once

#include <QMargins>
#include <QPointer>
#include <QSize>
#include <QSizePolicy>

#include <vector>

class QLayout;
class QSpacerItem;
class QWidget;

namespace Corvane {

/// Enlarges all that is on a page: what is drawn, and the sizes, gaps and margins that are fixed.
class Growth {
public:
    explicit Growth(QWidget& page)
        : page(page) {}

    /// From the usual sizes on, whatever was applied before.
    void apply(double factor);

    /// Lays out what has got new sizes.
    void settle() const;

    /// Back to the usual sizes.
    void undo();

private:
    struct Extent {
        QPointer<QWidget> widget;
        QSize least;
        QSize most;
    };
    struct Gaps {
        QLayout* layout;
        QMargins margins;
        int spacing;
    };
    struct Spacer {
        QSpacerItem* item;
        QSize size;
        QSizePolicy policy;
    };

    void remember();

    QWidget& page;
    bool applied = false;
    std::vector<Extent> extents;
    std::vector<Gaps> gaps;
    std::vector<Spacer> spacers;
};

}  // namespace Corvane
