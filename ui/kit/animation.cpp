#include "ui/kit/animation.hpp"

#include <QEvent>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace Kit {

namespace {

// All animations move at the same moments, so that the window is repainted once for them all. Meters
// are smooth at this rate, which costs half of what every frame of the screen would.
constexpr int frameMs = 33;

// How far into its frame an animation started that is now told it has run for `ms`. Its start does not
// tell: the toolkit counts an animation's time from the tick before.
int phaseAt(int ms) {
    const auto now = std::chrono::steady_clock::now().time_since_epoch() / std::chrono::milliseconds(1);
    return static_cast<int>((now - ms) % frameMs);
}

constexpr int evenMs = 80;
constexpr double stiffness = 140;
constexpr double damping = 13;
constexpr double stillSpeed = 0.05;  // per second
constexpr double stillDistance = 0.02;

}  // namespace

Animation::Animation(Kind kind, double start, QWidget& view, std::function<void()> moved)
    : kind(kind)
    , view(view)
    , moved(std::move(moved))
    , now(start)
    , from(start)
    , target(start) {
    view.installEventFilter(this);
}

void Animation::moveTo(double place) {
    if (place == target) return;
    target = place;
    from = now;
    if (!view.isVisible() || view.window()->isMinimized()) return arrive();
    if (kind == Kind::even) stop();
    if (state() == Stopped) {
        reachedMs = 0;
        shownFrame = 0;
        phase.reset();
        start();
    }
}

bool Animation::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Hide && state() == Running) arrive();
    return QAbstractAnimation::eventFilter(watched, event);
}

void Animation::arrive() {
    stop();
    now = target;
    velocity = 0;
    moved();
}

void Animation::updateCurrentTime(int ms) {
    if (ms == 0) return;
    if (!phase) phase = phaseAt(ms);
    const int frame = (ms + *phase) / frameMs;
    if (std::exchange(shownFrame, frame) == frame) return;
    if (kind == Kind::even) {
        if (ms >= evenMs) return arrive();
        now = from + (target - from) * ms / evenMs;
        return moved();
    }
    constexpr double step = 0.001;
    for (int elapsed = std::min(ms - reachedMs, 250); elapsed > 0; --elapsed) {
        velocity += (stiffness * (target - now) - damping * velocity) * step;
        now += velocity * step;
    }
    reachedMs = ms;
    if (std::abs(velocity) < stillSpeed && std::abs(target - now) < stillDistance) return arrive();
    moved();
}

}  // namespace Kit
