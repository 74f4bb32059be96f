#include "ui/kit/animation.hpp"

#include <QEvent>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace Kit {

namespace {

// All animations advance on one grid of 33 ms, so that the window is repainted once for all of them.
// Meters look smooth at this rate, which costs half of what 60 frames a second would.
constexpr int frameMs = 33;

// Offset in ms of the animation's start within the grid, derived from its elapsed time. The time of the
// call of `start` would be wrong: the toolkit counts elapsed time from the screen's frame before it.
int phaseFrom(int elapsedMs) {
    const auto now = std::chrono::steady_clock::now().time_since_epoch() / std::chrono::milliseconds(1);
    return static_cast<int>((now - elapsedMs) % frameMs);
}

constexpr int evenMs = 80;

// Of a mass of 1. The spring has settled when both speed (per second) and distance are below these.
constexpr double stiffness = 140;
constexpr double damping = 13;
constexpr double settledSpeed = 0.05;
constexpr double settledDistance = 0.02;

// After a pause of the program that is longer than this, the spring moves on by this much time only.
constexpr int longestGapMs = 250;

bool motionReduced = false;

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

void Animation::reduceMotion(bool reduces) { motionReduced = reduces; }

bool Animation::isMotionReduced() { return motionReduced; }

void Animation::moveTo(double place) {
    if (place == target) return;
    target = place;
    from = now;
    if (motionReduced || !view.isVisible() || view.window()->isMinimized()) return finish();
    if (kind == Kind::even) stop();
    if (state() == Stopped) {
        computedMs = 0;
        frame = 0;
        phase.reset();
        start();
    }
}

bool Animation::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Hide && state() == Running) finish();
    return QAbstractAnimation::eventFilter(watched, event);
}

void Animation::finish() {
    stop();
    now = target;
    velocity = 0;
    moved();
}

void Animation::updateCurrentTime(int ms) {
    if (ms == 0) return;
    if (!phase) phase = phaseFrom(ms);
    const int current = (ms + *phase) / frameMs;
    if (std::exchange(frame, current) == current) return;
    if (kind == Kind::even) {
        if (ms >= evenMs) return finish();
        now = from + (target - from) * ms / evenMs;
        return moved();
    }
    constexpr double step = 0.001;
    for (int elapsed = std::min(ms - computedMs, longestGapMs); elapsed > 0; --elapsed) {
        velocity += (stiffness * (target - now) - damping * velocity) * step;
        now += velocity * step;
    }
    computedMs = ms;
    if (std::abs(velocity) < settledSpeed && std::abs(target - now) < settledDistance) return finish();
    moved();
}

}  // namespace Kit
