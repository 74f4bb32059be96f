#include "ui/kit/animation.hpp"

#include <QEvent>
#include <QWindow>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Kit {

namespace {

constexpr int evenMs = 80;
constexpr int stepMs = 200;

// Of a mass of 1. The spring has settled when both speed (per second) and distance are below these.
constexpr double stiffness = 140;
constexpr double damping = 13;
constexpr double settledSpeed = 0.05;
constexpr double settledDistance = 0.02;

// After a pause of the program that is longer than this, the spring moves on by this much time only.
constexpr int longestGapMs = 250;

bool motionReduced = false;

}  // namespace

// A window that is covered is not exposed. One that is minimised remains exposed on some desktops.
bool isSeen(const QWidget& view) {
    const QWindow* const window = view.window()->windowHandle();
    return view.isVisible() && window && window->isExposed() && !view.window()->isMinimized();
}

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
    if ((motionReduced && kind != Kind::steps) || !isSeen(view)) return finish();
    if (kind == Kind::even) stop();
    if (state() == Running) return;
    movedMs = 0;
    start();
    if (kind != Kind::steps) return;
    now = target;
    moved();
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
    if (!isSeen(view)) return finish();
    switch (kind) {
    case Kind::even:
        if (ms >= evenMs) return finish();
        now = from + (target - from) * ms / evenMs;
        return moved();
    case Kind::spring:
        return swing(ms);
    case Kind::steps:
        if (ms - movedMs < stepMs) return;
        if (now == target) return stop();
        movedMs = ms;
        now = target;
        return moved();
    }
}

void Animation::swing(int ms) {
    constexpr double step = 0.001;
    for (int elapsed = std::min(ms - movedMs, longestGapMs); elapsed > 0; --elapsed) {
        velocity += (stiffness * (target - now) - damping * velocity) * step;
        now += velocity * step;
    }
    movedMs = ms;
    if (std::abs(velocity) < settledSpeed && std::abs(target - now) < settledDistance) return finish();
    moved();
}

}  // namespace Kit
