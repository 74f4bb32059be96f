#pragma once

#include "ui/kit/shadows.hpp"

#include <QFont>
#include <QPainter>
#include <QString>

namespace Paint {

struct TextStyle {
    QFont font;
    QColor color;
    Shadow shadow = {};          // none when it has no colour
    bool tabularDigits = false;  // all digits as wide as the widest, so that changing numbers stand still
    bool shaded = false;         // surrounded by a soft shade, for dim text on what is not dark itself
};

double textWidth(const QString& text, const TextStyle& style);

/// One line in the middle of the height of `bounds`, elided when it is too wide for them.
void text(QPainter& painter, const QRectF& bounds, Qt::Alignment alignment, const QString& text,
          const TextStyle& style);

}  // namespace Paint
