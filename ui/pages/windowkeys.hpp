#pragma once

#include <QWidget>

#include <functional>

namespace Corvane {

/// The keys that a title bar would have.
class WindowKeys final : public QWidget {
public:
    struct Actions {
        std::function<void()> close;
        std::function<void()> minimise;
        std::function<void()> zoom;
    };

    WindowKeys(Actions actions, QWidget* parent);
};

}  // namespace Corvane
