#pragma once

#include "ui/kit/growing.hpp"

#include <QPainter>
#include <QWidget>

namespace Kit {

/// A recessed field; its owner lays out the content.
class Well : public QWidget, public Growing {
public:
    Well(double radius, QWidget* parent);

    void setGrowth(double factor) override;

    /// Draws the well in its own coordinates.
    void draw(QPainter& painter) const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const double radius;
    double growth = 1;
};

}  // namespace Kit
