#pragma once

#include <QAbstractAnimation>
#include <QPointer>
#include <QWidget>

#include <functional>
#include <optional>

namespace Kit {

/// A number on its way to another, for the eye alone: evenly, or like a mass on a spring. Where
/// the view is not on screen it is there at once.
class Animation final : public QAbstractAnimation {
public:
    enum class Kind { even, spring };

    Animation(Kind kind, double start, QWidget& view, std::function<void()> moved);

    double position() const { return now; }
    void moveTo(double target);

    int duration() const override { return -1; }

protected:
    void updateCurrentTime(int ms) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void arrive();

    const Kind kind;
    QWidget& view;
    const std::function<void()> moved;
    double now;
    double from;
    double target;
    double velocity = 0;
    std::optional<int> phase;
    int shownFrame = 0;
    int reachedMs = 0;
};

}  // namespace Kit
