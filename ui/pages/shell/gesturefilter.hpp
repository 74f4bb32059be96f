#pragma once

#include "app/model/history.hpp"

#include <QObject>

#include <cstdint>

class QWidget;

namespace Corvane {

/// Tells the history of settings which changes belong to one gesture of the user: those from the press
/// of a mouse button to its release, and those of the notches and key presses on one control. It sees
/// the events of the window that `view` is in before the controls do.
class GestureFilter final : public QObject {
public:
    GestureFilter(QWidget& view, History& history);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void begin(std::uint64_t at);
    void endAfterRelease();
    void end();

    QWidget& view;
    History& history;
    bool pressed = false;
    std::uint64_t pressedAt = 0;
    bool released = false;  // the control has still to act on the release
};

}  // namespace Corvane
