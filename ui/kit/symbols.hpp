#pragma once

#include "ui/kit/shadows.hpp"

#include <QBrush>
#include <QPainter>
#include <QRectF>
#include <QString>

/// The icons, by name ("music.note"), and the logo mark, drawn in any colour or gradient.
namespace Symbols {

/// In the middle of `bounds`, as large as fits them.
void draw(QPainter& painter, const QString& name, const QRectF& bounds, const QBrush& brush,
          const Paint::Shadow& shadow = {});

/// Width divided by height of the mark.
double logoAspect();
void drawLogo(QPainter& painter, const QRectF& bounds, const QBrush& brush, const Paint::Shadow& shadow = {});

}  // namespace Symbols
