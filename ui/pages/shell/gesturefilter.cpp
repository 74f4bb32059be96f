#include "ui/pages/shell/gesturefilter.hpp"

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>

namespace Corvane {

GestureFilter::GestureFilter(QWidget& view, History& history)
    : QObject(&view)
    , view(view)
    , history(history) {
    qApp->installEventFilter(this);
}

// An event that a control does not take passes on to its parents and comes here again for each. All of
// this can therefore be repeated for one event. Of several sources of a burst the last one counts,
// which is the one that takes the event.
bool GestureFilter::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
    case QEvent::Wheel:
    case QEvent::KeyPress:
        break;
    default:
        return false;
    }
    const auto* const widget = qobject_cast<QWidget*>(watched);
    if (!widget || widget->window() != view.window()) return false;
    const bool isPress =
        event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick;
    if (event->type() != QEvent::MouseButtonRelease && released) end();
    if (isPress)
        begin(static_cast<QMouseEvent*>(event)->timestamp());
    else if (event->type() != QEvent::MouseButtonRelease)
        history.burst(widget);
    else if (static_cast<QMouseEvent*>(event)->buttons() == Qt::NoButton)
        endAfterRelease();
    return false;
}

// A press at another time than the last one is a new gesture, also when that one's release got lost.
void GestureFilter::begin(std::uint64_t at) {
    if (pressed && at == pressedAt) return;
    pressed = true;
    pressedAt = at;
    history.beginGesture();
}

// Buttons act on the release, which they get after this filter.
void GestureFilter::endAfterRelease() {
    if (!pressed || released) return;
    released = true;
    QMetaObject::invokeMethod(
        this, [this] { end(); }, Qt::QueuedConnection);
}

void GestureFilter::end() {
    if (!released) return;
    released = false;
    pressed = false;
    history.endGesture();
}

}  // namespace Corvane
