#pragma once

#include "ui/kit/control.hpp"
#include "ui/kit/eqcurves.hpp"
#include "ui/kit/eqplot.hpp"
#include "ui/kit/notches.hpp"
#include "ui/kit/parts.hpp"
#include "ui/kit/tag.hpp"

#include <QBasicTimer>
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
/// The selected handle lies on top of the others, and of those a later one on an earlier one. A click
/// selects the topmost handle under the pointer, and a further click on the same spot the next one below.
/// A double click sets the gain to 0; where several handles lie it is two clicks. With Option (Alt) or Shift
/// held a handle moves a fifth as far as the pointer, from where it was. The wheel acts on the handle under
/// the pointer while the graph has the focus.
///
/// Keyboard: [ and ], Control with left and right, or the digits of a label select a handle; the arrows
/// move it by 1/24 octave or 0.5 dB, by a fifth of that with Option or Shift held; Home sets the gain to
/// 0; Page Up and Down do what a notch of the wheel does.
///
/// A cross with frequency and level follows the pointer over the plot. The handle that the user points
/// at or changes has its values in a tag, and the curve of its filter alone.
class EQGraph final : public Control, public Parts {
public:
    struct Curve {
        QString id;
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
        QString name = {};         // for screen readers
        QString description = {};  // of its values, for screen readers
        QString readOut = {};      // for its tag
        bool operator==(const Handle&) const = default;
    };

    /// The recess in which the graph stands is larger by these margins: curves and handles run beyond the
    /// plot. It is the whole widget.
    static constexpr QMargins bleed{0, 12, 18, 4};

    /// `height` of the graph: of plot and labels, without the margins.
    EQGraph(int height, QWidget* parent);

    /// A handle's new place: within the plot's frequencies and the gain that a band of the board
    /// accepts. Without this callback handles cannot be moved or selected.
    std::function<void(int id, double fc, double gain)> onDrag;

    /// Notches of the wheel over a handle, positive when it turns away from the user.
    std::function<void(int id, double notches)> onTurn;

    /// The levels of a handle's filter alone, at each of `EQPlot::freqs`. None are drawn without it.
    std::function<std::vector<double>(int id)> curveOf;

    /// Return is pressed while a handle is selected.
    std::function<void(int id)> onReturn;

    /// Another handle is selected, or none.
    std::function<void(std::optional<int> id)> onSelect;

    /// The pointer has come to another handle, or to none.
    std::function<void(std::optional<int> id)> onHover;

    void setCurves(std::vector<Curve> curves);
    void setHandles(std::vector<Handle> handles);

    const std::vector<Curve>& shownCurves() const { return curves; }
    const std::vector<Handle>& shownHandles() const { return handles; }
    std::optional<int> selection() const { return selected; }
    void select(std::optional<int> id);

    /// Draws a handle as if the pointer were on it, and on top of the others: the pointer is on
    /// something else that stands for it.
    void mark(std::optional<int> id);

    /// In the graph's area.
    EQPlot plot() const;

    /// The centre of the handle in the widget.
    QPointF placeOf(const Handle& handle) const;

    /// A chart with a slider for each handle; without handles to move, a picture.
    QAccessible::Role accessibleRole() const override;
    int partCount() const override { return isMovable() ? static_cast<int>(handles.size()) : 0; }
    Part part(int index) const override;
    void choosePart(int index) override;
    Range partRange() const override;
    double partStep() const override;
    void proposePart(int index, double gain) override;

protected:
    void paint(QPainter& painter) override;
    Outline outline() const override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void cancelInteraction() override;

private:
    // Points lie in the area of the control.
    struct Press {
        QPointF at;
        bool sameSpot;  // where the last click was
        bool dragging = false;
        bool fine = false;
        // The handle moves from `place` as the pointer moves from `from`, since the drag has become fine
        // or coarse.
        QPointF from = {};
        QPointF place = {};
        QPointF last = {};  // of the pointer
    };

    QPointF centreOf(const Handle& handle) const;
    QRect areaOf(const Handle& handle) const;  // in the widget, with glow and ring
    double ringOf(const Handle& handle) const;
    bool isMovable() const { return onDrag && !handles.empty(); }
    const Handle* handleOf(std::optional<int> id) const;
    std::vector<int> handlesAt(QPointF point) const;
    std::optional<int> topmostAt(QPointF point) const;
    void tellFocus();
    std::optional<int> handleInUse() const;
    void pointAt(std::optional<QPointF> point);
    void showUse();
    void repaintHandle(std::optional<int> id);
    void repaintCross();
    void selectNext(const std::vector<int>& among, int by);
    bool selectByKey(const QKeyEvent& event);
    bool moveByKey(const QKeyEvent& event);
    void dragTo(QPointF point, bool fine);
    void flatten(int id);
    bool hasCross() const;
    void repaintCurves(const QRegion& changed);
    void drawCurves(QPainter& painter);

    std::vector<Curve> curves;
    EQCurves picture;                        // of the curves and of `lone`
    std::vector<std::vector<double>> drawn;  // levels of each curve as they are on the screen
    std::vector<Handle> handles;
    std::optional<int> selected;
    std::optional<Press> press;
    std::optional<QPointF> lastClick;
    std::optional<QPointF> pointer;  // in the area, while it is over the graph
    std::optional<int> hovered;
    std::optional<int> marked;  // from outside
    QBasicTimer keyed;          // runs for a while after a key has changed the selected handle
    std::optional<int> inUse;   // the handle that the tag and `lone` belong to
    std::vector<double> lone;   // levels of its filter alone
    Tag tag{this};
    Notches notches;
};

}  // namespace Kit
