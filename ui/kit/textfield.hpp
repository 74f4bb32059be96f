#pragma once

#include "ui/kit/growing.hpp"

#include <QFont>
#include <QLineEdit>

namespace Kit {

/// A recessed field with a line of text that the user edits.
class TextField final : public QLineEdit, public Growing {
public:
    TextField(const QString& placeholder, QSize size, double fontSize, QWidget* parent);

    void setGrowth(double factor) override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const QFont usualFont;
};

}  // namespace Kit
