#pragma once

#include <QColor>
#include <QFont>
#include <QLinearGradient>
#include <QRectF>

/// Colours, gradients and fonts of the whole window. Sizes are logical pixels.
namespace Theme {

inline QColor rgb(double red, double green, double blue, double opacity = 1) {
    return QColor::fromRgbF(static_cast<float>(red), static_cast<float>(green), static_cast<float>(blue),
                            static_cast<float>(opacity));
}
inline QColor white(double opacity) { return rgb(1, 1, 1, opacity); }
inline QColor black(double opacity) { return rgb(0, 0, 0, opacity); }
inline QColor grey(double level) { return rgb(level, level, level); }
inline QColor faded(QColor color, double opacity) {
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

inline const QColor background = rgb(0.125, 0.133, 0.161);
inline const QColor panelTop = rgb(0.215, 0.227, 0.271);
inline const QColor panelBottom = rgb(0.165, 0.175, 0.212);
inline const QColor well = rgb(0.105, 0.112, 0.137);
inline const QColor text = rgb(0.90, 0.91, 0.94);
inline const QColor secondary = rgb(0.56, 0.58, 0.64);
inline const QColor tick = rgb(0.68, 0.70, 0.75);
inline const QColor accent = rgb(1.0, 0.42, 0.10);
inline const QColor accentSoft = faded(accent, 0.16);
inline const QColor legible = black(0.44);  // on the backdrop: a ground on which `secondary` can be read
inline const QColor good = rgb(0.35, 0.85, 0.45);
inline const QColor error = rgb(1.0, 0.27, 0.23);

/// The bevelled edge of raised parts, and the edge of recessed ones.
QLinearGradient rim(const QRectF& bounds);
QLinearGradient recessRim(const QRectF& bounds);

/// From top to bottom of `bounds`.
QLinearGradient vertical(const QRectF& bounds, const QColor& top, const QColor& bottom);

/// The font of all texts; `tracking` is added between letters.
QFont font(double size, QFont::Weight weight = QFont::Normal, double tracking = 0);

QFont grown(QFont font, double factor);

/// The title's own font where it is installed, else the font of all texts, widened.
QFont titleFont(double size, double tracking);

}  // namespace Theme
