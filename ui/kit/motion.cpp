#include "ui/kit/motion.hpp"

#include <QEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Kit {

namespace {

// A meter's move is smooth at this rate, and costs half of what every screen frame would.
constexpr int frameMs = 30;

constexpr int evenMs = 80;
constexpr double stiffness = 140;
constexpr double damping = 13;
constexpr double stillSpeed = 0.05;  // per second
constexpr double stillDistance = 0.02;

}  // namespace

Motion::Motion(Kind kind, double start, QWidget& view, std::function<void()> moved)
    : kind(kind)
    , view(view)
    , moved(std::move(moved))
    , now(start)
    , from(start)
    , target(start) {
    view.installEventFilter(this);
}

void Motion::moveTo(double place) {
    if (place == target) return;
    target = place;
    from = now;
    if (!view.isVisible() || view.window()->isMinimized()) return arrive();
    if (kind == Kind::even) stop();
    if (state() == Stopped) {
        lastFrame = 0;
        start();
    }
}

bool Motion::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Hide && state() == Running) arrive();
    return QAbstractAnimation::eventFilter(watched, event);
}

void Motion::arrive() {
    stop();
    now = target;
    velocity = 0;
    moved();
}

void Motion::updateCurrentTime(int ms) {
    if (ms - lastFrame < frameMs && ms < evenMs) return;
    if (kind == Kind::even) {
        if (ms >= evenMs) return arrive();
        now = from + (target - from) * ms / evenMs;
        lastFrame = ms;
        return moved();
    }
    if (ms - lastFrame < frameMs) return;
    constexpr double step = 0.001;
    for (int elapsed = std::min(ms - lastFrame, 250); elapsed > 0; --elapsed) {
        velocity += (stiffness * (target - now) - damping * velocity) * step;
        now += velocity * step;
    }
    lastFrame = ms;
    if (std::abs(velocity) < stillSpeed && std::abs(target - now) < stillDistance) return arrive();
    moved();
}

}  // namespace Kit
