#include "ui/pages/shared/room.hpp"

#include <algorithm>
#include <cmath>

namespace Corvane {

namespace {

constexpr QSize largest{1440, 860};  // window in which knobs have their usual size

}  // namespace

Room Room::in(QSize window) {
    const double lowest = leastOnSmallScreen.height();
    const QSize content = window.boundedTo(most);
    const double ratio =
        std::min(content.width() / double(largest.width()), content.height() / double(largest.height()));
    return {.ease = std::clamp((window.height() - lowest) / (least.height() - lowest), 0.0, 1.0),
            .beside = (window.width() - content.width()) / 2,
            .above = (window.height() - content.height()) / 2,
            .growth = std::max(std::floor(ratio * 8) / 8, 1.0),
            .taller = std::max(content.height() - usual.height(), 0)};
}

int Room::between(int tight, int usual) const {
    return static_cast<int>(std::lround(std::lerp(tight, usual, ease)));
}

}  // namespace Corvane
