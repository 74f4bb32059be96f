#pragma once

#include <QWidget>

namespace Kit {

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
    int turn = 0;  // in spokes
};

}  // namespace Kit
