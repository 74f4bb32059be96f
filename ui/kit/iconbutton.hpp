#pragma once

#include "ui/kit/button.hpp"

#include <QString>

namespace Kit {

/// A button with an icon alone; its meaning is a tooltip and the accessible name.
class IconButton final : public Button {
public:
    IconButton(QString symbol, const QString& meaning, double iconSize, QWidget* parent);

protected:
    void paint(QPainter& painter) override;

private:
    const QString symbol;
    const double iconSize;
};

}  // namespace Kit
