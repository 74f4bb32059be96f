#pragma once

#include <QPointer>
#include <QRectF>
#include <QWidget>

#include <functional>

namespace Kit {

/// The shape of a control: a rounded rectangle.
struct Outline {
    QRectF shape;
    double radius;
};

/// A light ring outside of its owner's outline, for an owner with the keyboard focus. It is on the screen
/// only between `show` and `hide`, and follows its owner meanwhile.
class FocusRing final : public QObject {
public:
    /// `outline` is in the owner's coordinates.
    FocusRing(QWidget& owner, std::function<Outline()> outline);
    ~FocusRing() override;

    void show();
    void hide();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    class Overlay;

    void place();

    QWidget& owner;
    const std::function<Outline()> outline;
    QPointer<QWidget> overlay;  // a child of the window, which may be destroyed before the ring
};

}  // namespace Kit
