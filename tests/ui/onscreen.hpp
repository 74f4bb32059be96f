#pragma once

#include "ui/kit/announcer.hpp"
#include "ui/kit/caption.hpp"

#include <QString>
#include <QWidget>

#include <algorithm>
#include <stdexcept>
#include <vector>

/// The widgets that a user sees in a window, by kind and accessible name.
namespace OnScreen {

/// The controls have no meta objects, so a cast tells their kinds apart.
template <class Widget>
std::vector<Widget*> all(const QWidget& window) {
    std::vector<Widget*> list;
    for (QWidget* const each : window.findChildren<QWidget*>())
        if (auto* const widget = dynamic_cast<Widget*>(each); widget && widget->isVisible())
            list.push_back(widget);
    return list;
}

/// A caption's name is its text.
inline QString nameOf(const QWidget& widget) {
    if (dynamic_cast<const Kit::Announcement*>(&widget)) return {};  // it is not seen
    const auto* const caption = dynamic_cast<const Kit::Caption*>(&widget);
    return caption && widget.accessibleName().isEmpty() ? caption->shownText() : widget.accessibleName();
}

template <class Widget>
Widget& find(const QWidget& window, const QString& name) {
    for (Widget* const widget : all<Widget>(window))
        if (nameOf(*widget) == name) return *widget;
    throw std::runtime_error("not on the screen: " + name.toStdString());
}

inline bool shows(const QWidget& window, const QString& name) {
    return std::ranges::any_of(all<QWidget>(window),
                               [&](const QWidget* each) { return nameOf(*each) == name; });
}

}  // namespace OnScreen
