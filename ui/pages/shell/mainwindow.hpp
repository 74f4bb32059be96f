#pragma once

#include "ui/pages/shell/contentview.hpp"

#include <QWidget>

namespace Corvane {

/// The window: frameless, moved by its head, resized at its edges, closed, minimised and zoomed by
/// buttons of its own. The model must outlive it.
class MainWindow final : public QWidget {
public:
    MainWindow(AppModel& model, bool choosesLink);

    ContentView& content() { return *view; }

protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Qt::Edges edgesAt(QPointF place) const;
    void showEdgeCursor(Qt::Edges edges);
    void zoom();

    ContentView* view;
    QWidget* buttons;
    bool edgeCursorShown = false;
    std::optional<QPoint> grip;  // where the window is held while it moves without the desktop's help
};

}  // namespace Corvane
