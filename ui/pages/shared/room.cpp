#include "ui/pages/shared/room.hpp"

#include <algorithm>
#include <cmath>

namespace Corvane {

Room Room::in(QSize window) {
    const double lowest = leastOnSmallScreen.height();
    const QSize content = window.boundedTo(most);
    return {.ease = std::clamp((window.height() - lowest) / (least.height() - lowest), 0.0, 1.0),
            .beside = (window.width() - content.width()) / 2,
            .above = (window.height() - content.height()) / 2};
}

int Room::between(int tight, int usual) const {
    return static_cast<int>(std::lround(std::lerp(tight, usual, ease)));
}

}  // namespace Corvane
