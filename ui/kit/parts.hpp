#pragma once

#include "ui/kit/valuecontrol.hpp"

#include <QRect>
#include <QString>

#include <optional>

namespace Kit {

/// What a control draws without widgets of its own: the bands of a graph, the entries of a menu. Screen
/// readers know each part as a child of the control. Parts count from 0.
class Parts {
public:
    struct Part {
        QString name;
        QString value;  // in words
        bool isCurrent = false;
        QRect place;                   // in the control; empty if it is not drawn now
        std::optional<double> number;  // of a part that is a slider
    };

    virtual ~Parts() = default;

    virtual int partCount() const = 0;
    virtual Part part(int index) const = 0;

    /// Makes it the current one, as a click on it does.
    virtual void choosePart(int index) = 0;

    // Of parts with a number.
    virtual Range partRange() const { return {}; }
    virtual double partStep() const { return 0; }
    virtual void proposePart(int /*index*/, double /*number*/) {}
};

}  // namespace Kit
