#pragma once

#include <QWidget>

#include <functional>

namespace Corvane {

/// The mark and the name of the program.
class LogoTitle final : public QWidget {
public:
    explicit LogoTitle(QWidget* parent);

    /// A click with Alt and Control held. Any other one is left to whatever lies below.
    std::function<void()> onSecretClick;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
};

}  // namespace Corvane
