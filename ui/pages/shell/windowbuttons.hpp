#pragma once

#include <QWidget>

#include <functional>

namespace Corvane {

/// Close, minimise and zoom, as a title bar has them.
class WindowButtons final : public QWidget {
public:
    struct Actions {
        std::function<void()> close;
        std::function<void()> minimise;
        std::function<void()> zoom;
    };

    WindowButtons(Actions actions, QWidget* parent);
};

}  // namespace Corvane
