#pragma once

#include "ui/kit/control.hpp"
#include "ui/kit/eqplot.hpp"
#include "ui/kit/painting.hpp"

#include <QColor>
#include <QMargins>
#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace Kit {

/// Levels over frequency, with the filters that make them as handles. It keeps no positions: what
/// the user does to a handle goes out through the callbacks and comes back through `setHandles`.
///
/// Handles are dragged; where several lie on each other the nearest is taken, and further clicks on
/// the same spot take the others in turn. Keyboard: [ and ], Control with left and right, or the
/// digits of its label choose a handle; the arrows move it by 1/24 octave and 0.5 dB, five times
/// finer with Option or Shift; Page Up and Down, like the wheel, turn it.
class EQGraph final : public Control {
public:
    struct Curve {
        QString id;  // its name, too
        QColor color;
        std::vector<double> db;  // at each of `EqPlot::freqs`
        bool fill = false;       // shades what lies between it and 0 dB
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

    /// Room round the graph's own area for handles and light that reach beyond it; the widget is
    /// larger by so much.
    static constexpr QMargins bleed{0, 18, 18, 8};

    /// `height` of the graph's own area, labels included.
    EQGraph(int height, QWidget* parent);

    /// A handle's new place: 20 to 20000 Hz, -12 to +12 dB. Without it the handles stand still.
    std::function<void(int id, double fc, double gain)> onDrag;

    /// Notches of the wheel over a handle, positive away from the user.
    std::function<void(int id, double notches)> onTurn;

    void setCurves(std::vector<Curve> curves);
    void setHandles(std::vector<Handle> handles);

    const std::vector<Curve>& shownCurves() const { return curves; }
    const std::vector<Handle>& shownHandles() const { return handles; }
    std::optional<int> selection() const { return selected; }

    EqPlot plot() const;

    /// Its centre, in the widget.
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
        bool sameSpot;  // as the click before
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
    std::vector<Paint::Picture> pictures;    // of the curves, one each
    std::vector<std::vector<double>> drawn;  // levels of each, but for what is too little to be seen
    std::vector<Handle> handles;
    std::optional<int> selected;
    std::optional<Press> press;
    std::optional<QPointF> lastClick;
    Notches wheel;
};

}  // namespace Kit
