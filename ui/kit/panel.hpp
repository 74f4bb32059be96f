#pragma once

#include "ui/kit/finefill.hpp"

#include <QBasicTimer>
#include <QBoxLayout>
#include <QWidget>

namespace Kit {

/// A raised plate with a title row; its owner lays out the content below. The shadows of the plate lie
/// outside of its widget, so the parent must be a Surface, which draws them.
class Panel : public QWidget {
public:
    /// With an empty title there is no title row.
    Panel(const QString& title, QWidget* parent);

    /// Puts `view` at the right of the title row. The panel must have a title.
    void setTrailing(QWidget* view);

    /// Gives the title row at least that height. Titles of panels side by side are then on one line,
    /// whatever stands at their right.
    void reserveTitleRow(int height);

    QBoxLayout& content() { return *body; }

    static void drawShadows(QPainter& painter, const QRectF& plate);

protected:
    void paintEvent(QPaintEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void drawPlate(QPainter& painter, const QRegion& exposed);

    Paint::FinePicture surface;
    QBasicTimer hidden;  // runs for a while after the panel has been hidden
    QWidget* inside;     // of the round corners
    QHBoxLayout* header = nullptr;
    QVBoxLayout* body;
};

/// The parent of panels. It draws their shadows and is otherwise transparent.
class Surface : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace Kit
