#pragma once

#include <QWidget>

namespace Kit {

/// A part of a page that screen readers name: by its accessible name.
class Group : public QWidget {
public:
    Group(const QString& name, QWidget* parent)
        : QWidget(parent) {
        setAccessibleName(name);
    }
};

}  // namespace Kit
