#pragma once

#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QPainter>
#include <QTest>
#include <QWheelEvent>
#include <QWidget>

#include <algorithm>
#include <vector>

/// What a user's hand does to a control, and what the user sees of it.
namespace Hand {

inline void mouse(QWidget& control, QEvent::Type type, QPointF at, Qt::KeyboardModifiers modifiers = {}) {
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, at, control.mapToGlobal(at), button, held, modifiers);
    QApplication::sendEvent(&control, &event);
}

/// A press in the middle and moves to these points, relative to the middle; no release.
inline void pull(QWidget& control, const std::vector<QPointF>& through,
                 Qt::KeyboardModifiers modifiers = {}) {
    const QPointF start = QRectF(control.rect()).center();
    mouse(control, QEvent::MouseButtonPress, start, modifiers);
    for (const QPointF& point : through)
        mouse(control, QEvent::MouseMove, start + point, modifiers);
}

inline void drag(QWidget& control, QPointF by, Qt::KeyboardModifiers modifiers = {}) {
    pull(control, {by}, modifiers);
    mouse(control, QEvent::MouseButtonRelease, QRectF(control.rect()).center() + by, modifiers);
}

/// In eighths of a degree; a notch is 120. Whether the control takes the event.
inline bool wheel(QWidget& control, QPoint turn, QPointF at = {9, 9}) {
    QWheelEvent event(at, control.mapToGlobal(at), {}, turn, {}, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&control, &event);
    return event.isAccepted();
}

inline void enter(QWidget& control) {
    QEnterEvent event({}, {}, {});
    QApplication::sendEvent(&control, &event);
}

inline void leave(QWidget& control) {
    QEvent event(QEvent::Leave);
    QApplication::sendEvent(&control, &event);
}

inline void showActive(QWidget& window) {
    window.show();
    window.activateWindow();
    while (!window.isActiveWindow())
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

/// The control alone, on a transparent background.
inline QImage picture(QWidget& control, int ratio = 1) {
    QImage image(control.size() * ratio, QImage::Format_ARGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    control.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

inline QColor colorAt(QWidget& control, QPointF point) {
    return picture(control).pixelColor((point - QPointF(0.5, 0.5)).toPoint());
}

/// Whether any pixel of the control has that colour.
inline bool shows(QWidget& control, const QColor& color) {
    const QImage image = picture(control, 2);
    const auto* const pixels = reinterpret_cast<const QRgb*>(image.constBits());
    return std::count(pixels, pixels + image.sizeInBytes() / 4, color.rgb()) > 0;
}

/// The highest opacity on the outermost pixels.
inline int opacityAtBorder(const QImage& image) {
    int most = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (x == 0 || y == 0 || x == image.width() - 1 || y == image.height() - 1)
                most = std::max(most, qAlpha(image.pixel(x, y)));
    return most;
}

}  // namespace Hand
