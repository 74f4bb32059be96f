#pragma once

#include "ui/kit/panel.hpp"

namespace Corvane {

/// The keys of the window and of its controls. It destroys itself when it is closed.
class KeyList final : public Kit::Surface {
public:
    explicit KeyList(QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace Corvane
