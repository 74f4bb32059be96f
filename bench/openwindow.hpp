#pragma once

#include "app/demo.hpp"
#include "app/model/appmodel.hpp"
#include "app/model/uiexecutor.hpp"
#include "simulator/line.hpp"
#include "simulator/virtualtime.hpp"
#include "tests/ui/onscreen.hpp"
#include "ui/pages/shell/mainwindow.hpp"

#include <benchmark/benchmark.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// What the measurements of the window have in common.
namespace Bench {

/// A page of either mode.
struct ShownPage {
    std::string name;
    bool technical;
    Corvane::Page page;
    Corvane::TechPage techPage;

    void showIn(Corvane::AppModel& model, Corvane::ContentView& view) const;
};

/// Every page of the simple and then of the technical mode.
std::vector<ShownPage> pages();

ShownPage simple(Corvane::Page page);
ShownPage technical(const Corvane::TechPage& page);

/// A model that is online with simulated speakers, on a clock that stands still, so that nothing but
/// the measured action happens.
struct StillChain {
    explicit StillChain(std::size_t speakers = Simulator::LineOptions{}.boards);

    Simulator::VirtualTime time;
    std::shared_ptr<Corvane::AppModel> model;
};

/// A model that is online with the chain of `corvane --demo` or another one, on the event loop.
struct LiveChain {
    /// `onSetting` gets the time of every settings frame, on the thread that sends it.
    using OnSetting = std::function<void(Wendril::TimePoint at)>;

    explicit LiveChain(OnSetting onSetting);

    /// With the chain at that serial port.
    explicit LiveChain(const std::string& port);

    std::optional<Corvane::Demo> demo;
    std::shared_ptr<Corvane::UiExecutor> executor = std::make_shared<Corvane::UiExecutor>();
    std::shared_ptr<Corvane::AppModel> model;

private:
    void connect(const std::string& port, OnSetting onSetting);
};

/// A window on the screen, at a page.
class OpenWindow {
public:
    OpenWindow(Corvane::AppModel& model, const ShownPage& page);

    Corvane::MainWindow window;
};

/// Drags a control up and down. Every move changes its value by more than one step.
class Drag {
public:
    Drag(QWidget& control, QPointF at);
    ~Drag();
    Drag(const Drag&) = delete;
    Drag& operator=(const Drag&) = delete;

    void move(int number);

private:
    QWidget& control;
    const QPointF start;
};

/// Handles the events that are due, painting included.
void settle();

/// Runs the event loop for that time.
void wait(std::chrono::milliseconds time);

/// Device pixels that `action` repaints.
double pixelsPaintedBy(const std::function<void()>& action);

/// Times `frame`, which gets the number of the iteration, and counts the pixels that it repaints.
void measureFrames(benchmark::State& state, const std::function<void(int)>& frame);

}  // namespace Bench
