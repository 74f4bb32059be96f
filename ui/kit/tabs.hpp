#pragma once

#include "ui/kit/button.hpp"

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace Kit {

/// The title of one page in a row of tabs. A click does not select it: the owner does.
class Tab final : public Button {
public:
    Tab(const QString& title, const QColor& color, int padding, QWidget* parent);

    void setSelected(bool value);

    QAccessible::Role accessibleRole() const override { return QAccessible::PageTab; }
    bool isChecked() const override { return selected; }

protected:
    void paint(QPainter& painter) override;
    Outline outline() const override;

private:
    const QString title;
    const QColor color;
    bool selected = false;
};

/// A row of tabs in a recessed capsule. The arrow keys select the neighbour.
class Tabs final : public QWidget {
public:
    /// `color`: of the titles that are not selected. `padding`: left and right of each title.
    Tabs(const QStringList& titles, const QColor& color, int padding, QWidget* parent);

    void setSelected(int index);

    /// A tooltip for each tab.
    void setTips(const QStringList& tips);

    void setVisible(bool visible) override;
    std::function<void(int)> onSelect;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::vector<Tab*> tabs;
};

}  // namespace Kit
