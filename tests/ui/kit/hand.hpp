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

/// What a user's hand does to a control, and what the eye sees of it.
namespace Hand {

inline void mouse(QWidget& control, QEvent::Type type, QPointF at, Qt::KeyboardModifiers modifiers = {}) {
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, at, control.mapToGlobal(at), button, held, modifiers);
    QApplication::sendEvent(&control, &event);
}

/// A press in the middle and a move through these points, counted from there.
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

inline void wheel(QWidget& control, int eighthsOfDegree) {
    const QPointF at = QRectF(control.rect()).center();
    QWheelEvent event(at, control.mapToGlobal(at), {}, {0, eighthsOfDegree}, {}, {}, Qt::NoScrollPhase,
                      false);
    QApplication::sendEvent(&control, &event);
}

inline void showActive(QWidget& window) {
    window.show();
    QApplication::setActiveWindow(&window);
    static_cast<void>(QTest::qWaitForWindowExposed(&window));
}

/// The control alone, on nothing.
inline QImage picture(QWidget& control, int ratio) {
    QImage image(control.size() * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    control.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

/// The strongest ink on the outermost pixels.
inline int inkAtBorder(const QImage& image) {
    int most = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (x == 0 || y == 0 || x == image.width() - 1 || y == image.height() - 1)
                most = std::max(most, qAlpha(image.pixel(x, y)));
    return most;
}

}  // namespace Hand
