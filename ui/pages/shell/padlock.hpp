#pragma once

#include "ui/kit/button.hpp"

#include <QVariantAnimation>

namespace Corvane {

/// A padlock and "Travado", while the page is locked. It acts only when it is held for a second, by
/// the mouse or by the space bar; its background fills meanwhile.
class Padlock final : public Kit::Button {
public:
    explicit Padlock(QWidget* parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paint(QPainter& painter) override;
    Outline outline() const override;
    void cancelInteraction() override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

private:
    void followPress();

    QVariantAnimation hold{this};  // from 0 to 1
};

}  // namespace Corvane
