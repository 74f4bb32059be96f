#pragma once

#include "ui/kit/growing.hpp"
#include "ui/kit/pictures.hpp"

#include <QStringList>
#include <QWidget>

#include <vector>

namespace Kit {

/// Bars side by side, each from -60 dB (empty) to +6 dB (full). The widget is larger than the bars by
/// `glow` on all sides, so that the glow of their lit parts is not cut off. It is opaque: when a level
/// changes, the toolkit repaints this widget alone and nothing behind it.
class MeterBars final : public QWidget, public Growing {
public:
    static constexpr int glow = 5;

    struct Look {
        double width;  // of a bar
        int pitch;     // from bar to bar
    };

    /// One bar for each name that screen readers say. `ground` draws what lies under the bars, in the
    /// coordinates of the parent, and leaves nothing transparent there.
    MeterBars(const QStringList& names, const Look& look, Paint::Drawing ground, QWidget* parent);

    /// In dB. A level that is not finite means silence.
    void setLevels(const std::vector<float>& levels);

    void setGrowth(double factor) override;

    /// What `ground` draws has changed. The toolkit does not repaint an opaque widget with its parent.
    void outdateGround();

    /// The lit part of a bar, 0 to 1.
    static double fractionOf(float level);

protected:
    void paintEvent(QPaintEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    class Bar;

    void placeBars();

    const Look look;
    const Paint::Drawing drawGround;
    Paint::Ground ground;
    double growth = 1;
    std::vector<Bar*> bars;
};

}  // namespace Kit
