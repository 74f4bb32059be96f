#include "bench/livewindow.hpp"

#include "bench/measuring.hpp"
#include "bench/openwindow.hpp"

#include "ui/kit/meterbars.hpp"
#include "ui/kit/polar.hpp"
#include "ui/pages/shared/room.hpp"

#include <QApplication>
#include <QBasicTimer>
#include <QImage>
#include <QPaintEvent>
#include <QPainter>
#include <QTimerEvent>

#include <array>
#include <cmath>
#include <fstream>

namespace Bench {

using namespace std::chrono_literals;

namespace {

class Canvas final : public QWidget {
public:
    Canvas(Corvane::AppModel& model, const std::string& scene)
        : model(model)
        , page(QString::fromStdString(scene + "/page.png")) {
        page.setDevicePixelRatio(devicePixelRatio());
        std::ifstream file(scene + "/needles");
        for (int x = 0, y = 0, width = 0, height = 0; file >> x >> y >> width >> height;)
            needles.push_back({QRect(x, y, width, height), 0});
        setAttribute(Qt::WA_OpaquePaintEvent);
        resize(Corvane::Room::usual);
        constexpr int frameMs = 33;
        timer.start(frameMs, Qt::PreciseTimer, this);
        show();
    }

protected:
    void timerEvent(QTimerEvent*) override {
        const std::vector<float> levels = model.meters.value();
        if (levels.size() < bars.size()) return;
        for (std::size_t i = 0; i < bars.size(); ++i) {
            const int lit = int(std::lround(barHeight * Kit::MeterBars::fractionOf(levels[i])));
            if (std::exchange(bars.at(i), lit) != lit) update(barAt(i));
        }
        for (std::size_t i = 0; i < needles.size(); ++i) {
            Needle& needle = needles[i];
            constexpr double part = 0.3;  // of the way, in each frame
            const double target = fullAngle * (Kit::MeterBars::fractionOf(levels[i]) - 0.5);
            if (std::abs(target - needle.angle) < 0.05) continue;
            const QLineF before = lineOf(needle);
            needle.angle += part * (target - needle.angle);
            update(around(before) | around(lineOf(needle)));
        }
    }

    // Part by part and in low pieces, as the toolkit draws without other threads.
    void paintEvent(QPaintEvent* event) override {
        QPainter painter(this);
        const double ratio = devicePixelRatio();
        for (const QRect& part : event->region()) {
            painter.setClipRect(part);
            painter.drawImage(part, page,
                              QRectF(QPointF(part.topLeft()) * ratio, QSizeF(part.size()) * ratio));
        }
        painter.setClipping(false);
        for (std::size_t i = 0; i < bars.size(); ++i) {
            const QRect bar = barAt(i);
            painter.fillRect(bar.adjusted(0, bar.height() - bars.at(i), 0, 0), QColor(255, 160, 60));
        }
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(Qt::black, 2));
        for (const Needle& needle : needles) {
            constexpr int pieces = 16;
            const QLineF line = lineOf(needle);
            for (int i = 0; i < pieces; ++i)
                painter.drawLine(line.pointAt(double(i) / pieces), line.pointAt(double(i + 1) / pieces));
        }
    }

private:
    static constexpr double fullAngle = 100;
    static constexpr int barHeight = 360;

    struct Needle {
        QRect meter;
        double angle;
    };

    static QRect barAt(std::size_t number) { return {960 + 40 * int(number), 300, 4, barHeight}; }
    static QLineF lineOf(const Needle& needle) {
        const QPointF foot(needle.meter.center().x(), needle.meter.bottom());
        return {foot, Kit::onCircle(foot, 0.7 * needle.meter.height(), needle.angle)};
    }
    static QRect around(const QLineF& line) {
        return QRectF(line.p1(), line.p2()).normalized().adjusted(-2, -2, 2, 2).toAlignedRect();
    }

    Corvane::AppModel& model;
    QImage page;
    std::vector<Needle> needles;
    std::array<int, 6> bars{};
    QBasicTimer timer;
};

}  // namespace

void measureCanvas(const std::string& port, const std::string& scene) {
    LiveChain chain(port);
    Canvas canvas(*chain.model, scene);
    wait(1500ms);
    print("tone_mb", residentMegabytes());
    print("tone_percent", coreShare());
    print("tone_paints", paintEventsPerSecond());
    canvas.resize(1920, 1200);
    wait(1500ms);
    print("tone_large_percent", coreShare());
    canvas.showMinimized();
    wait(1500ms);
    print("minimised_percent", coreShare());
}

void traceCanvas(const std::string& port, const std::string& scene) {
    LiveChain chain(port);
    const Canvas canvas(*chain.model, scene);
    wait(1500ms);
    traced("tone", watch);
}

}  // namespace Bench
