#pragma once

#include <QStackedWidget>

namespace Kit {

/// Pages of which one is shown. While something covers them, screen readers do not see them.
class PageStack final : public QStackedWidget {
public:
    using QStackedWidget::QStackedWidget;

    bool isCovered() const { return covered; }
    void setCovered(bool value) { covered = value; }

private:
    bool covered = false;
};

}  // namespace Kit
