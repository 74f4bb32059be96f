#pragma once

#include <QPainter>
#include <QWidget>

namespace Kit {

/// A recessed field; its owner lays out the content.
class Well : public QWidget {
public:
    Well(double radius, QWidget* parent);

    /// Draws the well in its own coordinates.
    void draw(QPainter& painter) const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const double radius;
};

}  // namespace Kit
