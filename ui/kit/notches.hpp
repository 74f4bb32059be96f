#pragma once

class QWheelEvent;

namespace Kit {

/// Counts the notches of a wheel. Fine wheels and touch pads report parts of a notch, which add up.
class Notches {
public:
    /// Whole notches since the last call, positive when the wheel turns away from the user.
    int take(const QWheelEvent& event);

private:
    int rest = 0;
};

}  // namespace Kit
