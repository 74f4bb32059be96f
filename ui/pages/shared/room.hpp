#pragma once

#include <QSize>

namespace Corvane {

/// The room that a window has for its content.
struct Room {
    /// The least window where the screen allows it, the least on a small screen, and the window that
    /// opens.
    static constexpr QSize least{1240, 780};
    static constexpr QSize leastOnSmallScreen{1240, 700};
    static constexpr QSize usual{1280, 820};

    /// The content spreads with the window up to this size, and stays in the middle of a larger one.
    static constexpr QSize most{2304, 1376};

    double ease = 1;    // 1 from the least height on, 0 at the least height on a small screen
    int beside = 0;     // free at the left and at the right of the content
    int above = 0;      // free above and below the content
    double growth = 1;  // of all on a page, in steps of a sixteenth: each needs pictures of its own

    static Room in(QSize window);

    /// A vertical gap or margin: `usual` of them, but as little as `tight` where the window is low. Rows
    /// and buttons can thus keep their height.
    int between(int tight, int usual) const;
};

}  // namespace Corvane
