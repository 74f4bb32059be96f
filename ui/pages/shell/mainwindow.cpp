#include "ui/pages/shell/mainwindow.hpp"

#include "ui/pages/shared/room.hpp"
#include "ui/pages/shell/windowbuttons.hpp"

#include "ui/kit/animation.hpp"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>

namespace Corvane {

namespace {

constexpr int edgeWidth = 6;
constexpr QPoint buttonsPlace(18, 9);

}  // namespace

MainWindow::MainWindow(AppModel& model, bool choosesLink)
    : model(model)
    , view(new ContentView(model, choosesLink, this))
    , buttons(new WindowButtons(
          {.close = [this] { close(); }, .minimise = [this] { showMinimized(); }, .zoom = [this] { zoom(); }},
          this)) {
    setWindowTitle(QStringLiteral("Corvane"));
    setWindowFlag(Qt::FramelessWindowHint);
    setAttribute(Qt::WA_OpaquePaintEvent);
    auto* const whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(view);
    buttons->move(buttonsPlace);
    buttons->raise();
    const QSize available = screen()->availableSize();
    view->setMinimumSize(Room::least.boundedTo(available).expandedTo(Room::leastOnSmallScreen));
    resize(Room::usual.boundedTo(available));
}

bool MainWindow::event(QEvent* event) {
    const bool handled = QWidget::event(event);
    switch (event->type()) {
    case QEvent::Show:
    case QEvent::Hide:
    case QEvent::WindowStateChange:
        tellWhetherSeen();
        break;
    default:
        break;
    }
    return handled;
}

void MainWindow::tellWhetherSeen() { model.showLevels(Kit::isSeen(*this)); }

void MainWindow::closeEvent(QCloseEvent* event) {
    if (leaving || !model.isSending()) return event->accept();
    event->ignore();
    model.start(model.leave());
    leaving = watch([this] { return model.status.value().isOnline(); },
                    [this](bool online) {
                        if (!online) QTimer::singleShot(0, this, &QWidget::close);
                    });
}

// The window's handle gets mouse events before any widget does, so a press on an edge resizes the
// window also where a control reaches to the edge.
void MainWindow::showEvent(QShowEvent* event) {
    windowHandle()->installEventFilter(this);
    QWidget::showEvent(event);
}

void MainWindow::resizeEvent(QResizeEvent*) { buttons->raise(); }

void MainWindow::zoom() { isMaximized() ? showNormal() : showMaximized(); }

Qt::Edges MainWindow::edgesAt(QPointF place) const {
    Qt::Edges edges;
    if (isMaximized() || isFullScreen()) return edges;
    edges.setFlag(Qt::LeftEdge, place.x() < edgeWidth);
    edges.setFlag(Qt::RightEdge, place.x() >= width() - edgeWidth);
    edges.setFlag(Qt::TopEdge, place.y() < edgeWidth);
    edges.setFlag(Qt::BottomEdge, place.y() >= height() - edgeWidth);
    return edges;
}

void MainWindow::showEdgeCursor(Qt::Edges edges) {
    if (edgeCursorShown) QGuiApplication::restoreOverrideCursor();
    edgeCursorShown = edges != Qt::Edges();
    if (!edgeCursorShown) return;
    const bool falling = edges == (Qt::LeftEdge | Qt::TopEdge) || edges == (Qt::RightEdge | Qt::BottomEdge);
    const bool rising = edges == (Qt::RightEdge | Qt::TopEdge) || edges == (Qt::LeftEdge | Qt::BottomEdge);
    const bool level = edges == Qt::LeftEdge || edges == Qt::RightEdge;
    QGuiApplication::setOverrideCursor(falling  ? Qt::SizeFDiagCursor
                                       : rising ? Qt::SizeBDiagCursor
                                       : level  ? Qt::SizeHorCursor
                                                : Qt::SizeVerCursor);
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::Expose:
        tellWhetherSeen();
        break;
    case QEvent::MouseMove: {
        const auto* const mouse = static_cast<QMouseEvent*>(event);
        if (mouse->buttons() == Qt::NoButton) showEdgeCursor(edgesAt(mouse->position()));
        break;
    }
    case QEvent::Leave:
        showEdgeCursor({});
        break;
    case QEvent::MouseButtonPress: {
        const auto* const mouse = static_cast<QMouseEvent*>(event);
        const Qt::Edges edges = edgesAt(mouse->position());
        if (mouse->button() == Qt::LeftButton && edges != Qt::Edges())
            return windowHandle()->startSystemResize(edges);
        break;
    }
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

// The window itself gets only those mouse events that no control has accepted.
void MainWindow::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || event->position().y() >= view->headHeight()) return;
    if (!windowHandle()->startSystemMove()) grip = event->globalPosition().toPoint() - pos();
}

void MainWindow::mouseMoveEvent(QMouseEvent* event) {
    if (grip) move(event->globalPosition().toPoint() - *grip);
}

void MainWindow::mouseReleaseEvent(QMouseEvent*) { grip.reset(); }

void MainWindow::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && event->position().y() < view->headHeight()) zoom();
}

}  // namespace Corvane
