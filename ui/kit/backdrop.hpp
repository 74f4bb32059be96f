#pragma once

#include <QPainter>

namespace Kit {

/// The background of the whole window.
void drawBackdrop(QPainter& painter, const QRectF& window);

}  // namespace Kit
