#include "ui/pages/shared/room.hpp"

#include <algorithm>
#include <cmath>

namespace Corvane {

namespace {

constexpr QSize largest{1440, 860};  // window in which a page has its usual size
constexpr double mostGrowth = 1.6;
constexpr double steps = 16;

}  // namespace

Room Room::in(QSize window) {
    const double lowest = leastOnSmallScreen.height();
    const QSize content = window.boundedTo(most);
    const double ratio =
        std::min(content.width() / double(largest.width()), content.height() / double(largest.height()));
    return {.ease = std::clamp((window.height() - lowest) / (least.height() - lowest), 0.0, 1.0),
            .beside = (window.width() - content.width()) / 2,
            .above = (window.height() - content.height()) / 2,
            .growth = std::clamp(std::floor(ratio * steps) / steps, 1.0, mostGrowth)};
}

int Room::between(int tight, int usual) const {
    return static_cast<int>(std::lround(std::lerp(tight, usual, ease)));
}

}  // namespace Corvane
