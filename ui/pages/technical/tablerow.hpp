#pragma once

#include <QColor>
#include <QWidget>

#include <vector>

namespace Corvane {

/// A row of a table: cells on a dark strip. The gaps between them grow with its width.
class TableRow : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void setCells(const std::vector<QWidget*>& cells);

    /// Over the strip.
    void setTint(const QColor& color);

    void paintEvent(QPaintEvent* event) override;

private:
    QColor tint;
};

}  // namespace Corvane
