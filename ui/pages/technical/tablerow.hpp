#pragma once

#include "ui/kit/growing.hpp"

#include <QColor>
#include <QWidget>

#include <vector>

namespace Corvane {

/// A row of a table: cells on a dark strip. The gaps between them grow with its width.
class TableRow : public QWidget, public Kit::Growing {
public:
    using QWidget::QWidget;

    void setGrowth(double factor) override { growth = factor; }

protected:
    void setCells(const std::vector<QWidget*>& cells);

    /// Over the strip.
    void setTint(const QColor& color);

    void paintEvent(QPaintEvent* event) override;

private:
    QColor tint;
    double growth = 1;
};

}  // namespace Corvane
