#pragma once

#include "ui/kit/control.hpp"
#include "ui/kit/eqplot.hpp"
#include "ui/kit/notches.hpp"
#include "ui/kit/pictures.hpp"

#include <QColor>
#include <QMargins>
#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace Kit {

/// A frequency response, with a handle for each filter. The graph keeps no positions: it reports what
/// the user does to a handle, and its owner sets the new position with `setHandles`.
///
/// A click selects the nearest handle within reach. Further clicks on the same spot select the other
/// handles there in turn. Keyboard: [ and ], Control with left and right, or the digits of a label
/// select a handle; the arrows move it by 1/24 octave or 0.5 dB, by a fifth of that with Option or
/// Shift held; Page Up and Down do what a notch of the wheel does.
class EQGraph final : public Control {
public:
    struct Curve {
        QString id;  // also its name for screen readers
        QColor color;
        std::vector<double> db;  // at each of `EQPlot::freqs`
        bool fill = false;       // shade the area between it and 0 dB
        bool operator==(const Curve&) const = default;
    };

    struct Handle {
        int id = 0;
        QString label;
        double fc = 1000;  // Hz
        double gain = 0;   // dB
        QColor color;
        bool dimmed = false;
        QString description = {};  // for screen readers
        bool operator==(const Handle&) const = default;
    };

    /// The widget is larger than the graph by these margins, so that handles and glows at the edge are
    /// not cut off.
    static constexpr QMargins bleed{0, 18, 18, 8};

    /// `height` of the graph: of plot and labels, without the margins.
    EQGraph(int height, QWidget* parent);

    /// A handle's new place: within the plot's frequencies and the gain that a band of the board
    /// accepts. Without this callback handles cannot be moved or selected.
    std::function<void(int id, double fc, double gain)> onDrag;

    /// Notches of the wheel over a handle, positive when it turns away from the user.
    std::function<void(int id, double notches)> onTurn;

    void setCurves(std::vector<Curve> curves);
    void setHandles(std::vector<Handle> handles);

    const std::vector<Curve>& shownCurves() const { return curves; }
    const std::vector<Handle>& shownHandles() const { return handles; }
    std::optional<int> selection() const { return selected; }

    EQPlot plot() const;

    /// The centre of the handle in the widget.
    QPointF placeOf(const Handle& handle) const;

    QAccessible::Role accessibleRole() const override { return QAccessible::Chart; }
    QString valueText() const override;

protected:
    void paint(QPainter& painter) override;
    Outline outline() const override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void cancelInteraction() override { press.reset(); }

private:
    struct Press {
        QPointF at;
        bool sameSpot;  // where the last click was
        bool dragging = false;
    };

    QRect areaOf(const Handle& handle) const;
    bool isMovable() const { return onDrag && !handles.empty(); }
    const Handle* handleOf(std::optional<int> id) const;
    std::vector<int> handlesAt(QPointF point) const;
    void select(std::optional<int> id);
    void selectNext(const std::vector<int>& among, int by);
    bool selectByKey(const QKeyEvent& event);
    bool moveByKey(const QKeyEvent& event);
    void dragTo(QPointF point);
    void drawCurves(QPainter& painter);
    void drawHandle(QPainter& painter, const Handle& handle) const;

    std::vector<Curve> curves;
    std::vector<Paint::Picture> pictures;    // one for each curve
    std::vector<std::vector<double>> drawn;  // levels of each curve as they are on the screen
    std::vector<Handle> handles;
    std::optional<int> selected;
    std::optional<Press> press;
    std::optional<QPointF> lastClick;
    Notches notches;
};

}  // namespace Kit
