#include "ui/pages/shared/room.hpp"

#include <algorithm>
#include <cmath>

namespace Corvane {

namespace {

constexpr double leastShare = 0.6;  // of a gap that stays on the smallest screen

}  // namespace

Room Room::in(QSize window) {
    const double lowest = leastOnSmallScreen.height();
    return {.ease = std::clamp((window.height() - lowest) / (least.height() - lowest), 0.0, 1.0)};
}

int Room::eased(int usual) const {
    return static_cast<int>(std::lround(usual * std::lerp(leastShare, 1.0, ease)));
}

}  // namespace Corvane
