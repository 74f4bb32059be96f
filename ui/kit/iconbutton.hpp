#pragma once

#include "ui/kit/control.hpp"

#include <QString>

namespace Kit {

/// An icon alone, with its meaning as a tooltip.
class IconButton final : public Button {
public:
    IconButton(QString symbol, const QString& meaning, double iconSize, QWidget* parent);

protected:
    void paint(QPainter& painter) override;

private:
    const QString symbol;
    const double iconSize;
};

/// Turns while something is under way.
class Spinner final : public QWidget {
public:
    explicit Spinner(QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    int timer = 0;
    int turn = 0;
};

}  // namespace Kit
