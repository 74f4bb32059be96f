#pragma once

#include "ui/kit/control.hpp"

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace Kit {

/// One of a row of pages. It shows its owner's choice and does not change it by itself.
class Tab final : public Button {
public:
    Tab(const QString& title, const QColor& color, int padding, QWidget* parent);

    void setSelected(bool value);

    QAccessible::Role accessibleRole() const override { return QAccessible::PageTab; }
    bool isCheckable() const override { return true; }
    bool isChecked() const override { return selected; }

protected:
    void paint(QPainter& painter) override;
    Outline outline() const override;

private:
    const QString title;
    const QColor color;
    bool selected = false;
};

/// Tabs in a recessed capsule. The arrow keys go to the neighbour.
class Tabs final : public QWidget {
public:
    /// `color` of the titles that are not selected; `padding` on both sides of each title.
    Tabs(const QStringList& titles, const QColor& color, int padding, QWidget* parent);

    void setSelected(int index);
    void setVisible(bool visible) override;
    std::function<void(int)> onSelect;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    std::vector<Tab*> tabs;
    int selected = -1;
};

}  // namespace Kit
