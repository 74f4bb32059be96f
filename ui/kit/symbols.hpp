#pragma once

#include "ui/kit/painting.hpp"

#include <QBrush>
#include <QPainter>
#include <QRectF>
#include <QString>

/// The icons, by name ("music.note"), and the logo mark. They take the colour that they are given.
namespace Symbols {

bool exists(const QString& name);

/// In the middle of `bounds`, as large as fits.
void draw(QPainter& painter, const QString& name, const QRectF& bounds, const QBrush& brush,
          const Paint::Shadow& shadow = {});

/// Width over height of the mark.
double logoAspect();
void drawLogo(QPainter& painter, const QRectF& bounds, const QBrush& brush, const Paint::Shadow& shadow = {});

}  // namespace Symbols
