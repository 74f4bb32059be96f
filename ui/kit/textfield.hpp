#pragma once

#include <QLineEdit>

namespace Kit {

/// A recessed field with a line of text that the user edits.
class TextField final : public QLineEdit {
public:
    TextField(const QString& placeholder, QSize size, double fontSize, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace Kit
