#pragma once

#include "ui/kit/control.hpp"

#include <QPointF>
#include <QPointer>
#include <QString>

namespace Kit {

/// A small read-out that floats over the window of its owner, and is as large as that has grown. It takes
/// neither the focus nor the mouse. It is on the screen only between `show` and `hide`.
class Tag final {
public:
    explicit Tag(Control* owner)
        : owner(owner) {}
    ~Tag();
    Tag(const Tag&) = delete;
    Tag& operator=(const Tag&) = delete;

    /// The tag stands centred above `anchor`, or below it where the window has no room above. The anchor
    /// is in the owner's coordinates. `accent` draws it in the accent colour.
    void show(const QString& text, QPointF anchor, bool accent = false);
    void hide();

private:
    class Label;

    Control* const owner;
    QPointer<QWidget> label;  // a child of the window, which may be destroyed before the tag
};

}  // namespace Kit
