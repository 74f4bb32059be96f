#pragma once

#include <QLineEdit>

namespace Kit {

/// A line of text to type into, in a recessed field.
class TextField final : public QLineEdit {
public:
    TextField(const QString& placeholder, QSize size, double fontSize, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace Kit
