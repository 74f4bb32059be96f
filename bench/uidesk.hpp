#pragma once

#include "app/demo.hpp"
#include "app/model/appmodel.hpp"
#include "app/model/uiexecutor.hpp"
#include "simulator/virtualtime.hpp"
#include "ui/kit/valuecontrol.hpp"
#include "ui/pages/shell/mainwindow.hpp"

#include <benchmark/benchmark.h>

#include <QEvent>
#include <QObject>
#include <QWidget>

#include <atomic>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

/// What the measurements of the window have in common.
namespace Desk {

/// A page as the user calls it up.
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

/// A model that is online with three speakers, on a clock that stands still: nothing happens but
/// what is measured.
struct StillChain {
    StillChain();

    Simulator::VirtualTime time;
    std::shared_ptr<Corvane::AppModel> model;
};

/// A model that is online with the chain of `corvane --demo`, on the event loop.
struct LiveChain {
    /// `onSetting` is told the moment of every setting's frame, on whatever thread sends it.
    using OnSetting = std::function<void(Wendril::TimePoint at)>;

    explicit LiveChain(OnSetting onSetting);

    Corvane::Demo demo{Corvane::Demo::usualSpeakers};
    std::shared_ptr<Corvane::UiExecutor> executor = std::make_shared<Corvane::UiExecutor>();
    std::shared_ptr<Corvane::AppModel> model;
};

/// A window on the screen, at a page.
class OpenWindow {
public:
    OpenWindow(Corvane::AppModel& model, const ShownPage& page);

    /// The control of that kind and accessible name; any name where it is empty.
    template <class Widget>
    Widget& find(const QString& name = {}) {
        for (QWidget* const each : window.findChildren<QWidget*>())
            if (auto* const widget = dynamic_cast<Widget*>(each);
                widget && widget->isVisible() && (name.isEmpty() || widget->accessibleName() == name))
                return *widget;
        throw std::runtime_error("not on this page: " + name.toStdString());
    }

    Corvane::MainWindow window;
};

/// Has what is due on the event loop done, painting included.
void settle();

/// Runs the event loop for so long.
void wait(std::chrono::milliseconds time);

void mouse(QWidget& control, QEvent::Type type, QPointF at);

/// Device pixels that `action` has repainted.
double pixelsPaintedBy(const std::function<void()>& action);

/// Times `frame`, which is given the number of the iteration, and says how many pixels it repaints.
void measureFrames(benchmark::State& state, const std::function<void(int)>& frame);

}  // namespace Desk
