#pragma once

#include "ui/pages/shell/contentview.hpp"

#include <QWidget>

namespace Corvane {

/// The window. It has no frame: it is moved by header and strip, resized at its edges, and closed,
/// minimised and zoomed by its own buttons. Closing lets the edits that wait go out first; closing again
/// ends at once. The model must outlive it.
class MainWindow final : public QWidget {
public:
    MainWindow(AppModel& model, bool choosesLink);

    ContentView& content() { return *view; }

protected:
    bool event(QEvent* event) override;
    bool focusNextPrevChild(bool next) override { return view->focusNextPrevChild(next); }
    void closeEvent(QCloseEvent* event) override;
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
    void tellWhetherSeen();

    AppModel& model;
    ContentView* view;
    QWidget* buttons;
    bool edgeCursorShown = false;
    // The grabbed point of the window, while it is moved on a desktop that does not move windows.
    std::optional<QPoint> grip;
    std::shared_ptr<Watcher> leaving;  // from the first attempt to close, while edits wait
};

}  // namespace Corvane
