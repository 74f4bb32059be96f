#include "bench/openwindow.hpp"

#include "simulator/line.hpp"
#include "simulator/memorytransport.hpp"
#include "tests/ui/kit/hand.hpp"
#include "ui/pages/shared/room.hpp"

#include <QApplication>
#include <QEventLoop>
#include <QPaintEvent>
#include <QRegion>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace Bench {

using namespace Corvane;
using namespace Wendril;

namespace {

constexpr double ratio = 2;

Surroundings surroundings(std::shared_ptr<Executor> executor,
                          std::function<std::shared_ptr<Transport>(const std::string&)> serial) {
    return {
        .executor = std::move(executor),
        .serialPorts = [] { return std::vector<std::string>(); },
        .extraPort = "demo",
        .serial = std::move(serial),
        .bridge = nullptr,
    };
}

// A serial port that reports every settings frame.
class TappedPort final : public Transport {
public:
    TappedPort(const std::string& path, LiveChain::OnSetting onSetting)
        : port(path, K7Q::baudRate)
        , onSetting(std::move(onSetting)) {}

    std::string name() const override { return port.name(); }
    void open(OnData onData, OnClose onClose) override { port.open(std::move(onData), std::move(onClose)); }
    void write(ByteView data) override {
        port.write(data);
        if (data[3] == static_cast<std::uint8_t>(Fun::moduleSet)) onSetting(std::chrono::steady_clock::now());
    }
    void close() override { port.close(); }
    std::shared_ptr<Executor> queue() const override { return port.queue(); }

private:
    SerialTransport port;
    const LiveChain::OnSetting onSetting;
};

// The area that any widget has painted.
class PaintedPlaces final : public QObject {
public:
    PaintedPlaces() { qApp->installEventFilter(this); }

    QRegion places;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint && watched->isWidgetType()) {
            const auto* const widget = static_cast<QWidget*>(watched);
            places += static_cast<QPaintEvent*>(event)->region().translated(
                widget->mapTo(widget->window(), QPoint()));
        }
        return false;
    }
};

class Pause final : public QEventLoop {
protected:
    void timerEvent(QTimerEvent*) override { quit(); }
};

}  // namespace

void ShownPage::showIn(AppModel& model, ContentView& view) const {
    model.technical = technical;
    view.page = page;
    view.techPage = techPage;
}

ShownPage simple(Page page) { return {titleOf(page).toStdString(), false, page, {}}; }

ShownPage technical(const TechPage& page) { return {page.title().toStdString(), true, Page::tone, page}; }

std::vector<ShownPage> pages() {
    std::vector<ShownPage> all;
    for (const Page page : simplePages)
        all.push_back(simple(page));
    for (const TechPage& page : TechPage::all)
        all.push_back(technical(page));
    return all;
}

StillChain::StillChain(std::size_t speakers) {
    const Simulator::LineOptions options{.boards = speakers};
    const auto line = std::make_shared<Simulator::Line>(time.executor(), options);
    model = std::make_shared<AppModel>(surroundings(time.executor(), [line](const std::string&) {
        return std::make_shared<Simulator::MemoryTransport>(line);
    }));
    time.run(model->connect());
}

LiveChain::LiveChain(OnSetting onSetting)
    : demo(Demo::usualSpeakers) {
    connect(demo->port(), std::move(onSetting));
}

LiveChain::LiveChain(const std::string& port) {
    connect(port, [](TimePoint) {});
}

void LiveChain::connect(const std::string& port, OnSetting onSetting) {
    model = std::make_shared<AppModel>(
        surroundings(executor, [port, onSetting = std::move(onSetting)](const std::string&) {
            return std::make_shared<TappedPort>(port, onSetting);
        }));
    model->start(model->connect());
    while (!model->status.value().isOnline())
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

OpenWindow::OpenWindow(AppModel& model, const ShownPage& page)
    : window(model, true) {
    page.showIn(model, window.content());
    window.resize(Room::usual);
    window.show();
    // A window manager places it first.
    while (!window.windowHandle()->isExposed())
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    settle();
}

Drag::Drag(QWidget& control, QPointF at)
    : control(control)
    , start(at) {
    Hand::mouse(control, QEvent::MouseButtonPress, start);
}

Drag::~Drag() { Hand::mouse(control, QEvent::MouseButtonRelease, start); }

void Drag::move(int number) {
    constexpr int turn = 16;
    constexpr double points = 6;
    const int way = number % (2 * turn);
    Hand::mouse(control, QEvent::MouseMove, start - QPointF(0, points * std::min(way, 2 * turn - way)));
}

void settle() { QApplication::processEvents(); }

void wait(std::chrono::milliseconds time) {
    Pause pause;
    pause.startTimer(time, Qt::PreciseTimer);
    pause.exec();
}

double pixelsPaintedBy(const std::function<void()>& action) {
    const PaintedPlaces painted;
    action();
    double area = 0;
    for (const QRect& place : painted.places)
        area += ratio * place.width() * ratio * place.height();
    return area;
}

void measureFrames(benchmark::State& state, const std::function<void(int)>& frame) {
    int number = 0;
    while (number < 4)
        frame(number++);
    const double pixels = pixelsPaintedBy([&] { frame(number++); });
    for (auto _ : state)
        frame(number++);
    state.counters["pixels"] = pixels;
}

}  // namespace Bench
