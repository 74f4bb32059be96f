#pragma once

#include "ui/kit/button.hpp"
#include "ui/kit/parts.hpp"

#include <QMenu>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace Kit {

/// A recessed button that opens a list of titles. It shows the title that its owner has set; choosing
/// another one only reports its index. Keyboard: up and down choose the neighbour; Alt with down opens
/// the list.
class MenuButton : public Button, public Parts {
public:
    MenuButton(int width, QWidget* parent);

    void activate() override;
    QAccessible::Role accessibleRole() const override { return QAccessible::ComboBox; }
    QString valueText() const override;
    bool isExpanded() const override { return list && list->isVisible(); }
    int partCount() const override { return static_cast<int>(titles.size()); }
    Part part(int index) const override;
    void choosePart(int index) override { choose(index); }
    void cancelInteraction() override;

protected:
    void setTitles(const QStringList& titles);
    void setCurrent(std::optional<int> index);
    std::function<void(int)> onIndex;

    void paint(QPainter& painter) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void choose(int index);
    void step(int by);

    QStringList titles;
    std::optional<int> current;
    QString shown;         // the title of the current one
    QPointer<QMenu> list;  // while it is open
};

/// A MenuButton whose titles stand for values.
template <class Value>
class WellMenu final : public MenuButton {
public:
    using Options = std::vector<std::pair<Value, QString>>;

    WellMenu(int width, QWidget* parent)
        : MenuButton(width, parent) {
        onIndex = [this](int index) {
            if (onSelect) onSelect(options.at(static_cast<std::size_t>(index)).first);
        };
    }

    std::function<void(const Value&)> onSelect;

    void setOptions(Options list) {
        options = std::move(list);
        QStringList names;
        for (const auto& [value, title] : options)
            names << title;
        setTitles(names);
        showSelection();
    }

    void setSelection(const Value& value) {
        selection = value;
        showSelection();
    }

private:
    void showSelection() {
        std::optional<int> index;
        for (std::size_t i = 0; i < options.size() && !index; ++i)
            if (selection == options[i].first) index = static_cast<int>(i);
        setCurrent(index);
    }

    Options options;
    std::optional<Value> selection;
};

}  // namespace Kit
