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

    double ease = 1;  // 1 from the least height on, 0 at the least height on a small screen

    static Room in(QSize window);

    /// A vertical gap or margin. On a small screen these give way, so that rows and buttons keep their
    /// height.
    int eased(int usual) const;
};

}  // namespace Corvane
