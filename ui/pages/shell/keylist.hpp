#pragma once

#include "ui/kit/panel.hpp"

#include <functional>

namespace Corvane {

/// The keys of the window and of its controls, with a button that calls `openManual`. It destroys itself
/// when it is closed.
class KeyList final : public Kit::Surface {
public:
    KeyList(std::function<void()> openManual, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace Corvane
