#include "ui/kit/notches.hpp"

#include <QWheelEvent>

namespace Kit {

// With Alt held the toolkit reports a turn of the wheel as horizontal.
int Notches::take(const QWheelEvent& event) {
    const QPoint turn = event.angleDelta();
    rest += turn.y() != 0 ? turn.y() : turn.x();
    const int whole = rest / QWheelEvent::DefaultDeltasPerStep;
    rest -= whole * QWheelEvent::DefaultDeltasPerStep;
    return whole;
}

}  // namespace Kit
