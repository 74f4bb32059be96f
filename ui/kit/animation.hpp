#pragma once

#include <QAbstractAnimation>
#include <QPointer>
#include <QWidget>

#include <functional>

namespace Kit {

/// Whether the widget is on the screen: not in a window that is minimised or, where the desktop tells,
/// covered.
bool isSeen(const QWidget& view);

/// Moves the number that a view draws to a target: evenly within 80 ms, like a mass on a spring, or at
/// once but at most five times a second. While the view is not on the screen, or motion is reduced, the
/// number jumps to its target.
class Animation final : public QAbstractAnimation {
public:
    enum class Kind { even, spring, steps };

    /// `moved` is called after each change of `position`.
    Animation(Kind kind, double start, QWidget& view, std::function<void()> moved);

    /// For all views: for those whom movement on the screen makes unwell.
    static void reduceMotion(bool reduces);
    static bool isMotionReduced();

    double position() const { return now; }
    void moveTo(double target);

    int duration() const override { return -1; }

protected:
    void updateCurrentTime(int ms) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void finish();
    void swing(int ms);

    const Kind kind;
    QWidget& view;
    const std::function<void()> moved;
    double now;
    double from;  // where an even move began
    double target;
    double velocity = 0;  // of the spring, per second
    int movedMs = 0;      // up to which the spring has been computed; when the last step was made
};

}  // namespace Kit
