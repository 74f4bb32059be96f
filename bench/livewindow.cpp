#include "bench/livewindow.hpp"

#include "bench/measuring.hpp"
#include "bench/openwindow.hpp"
#include "tests/ui/kit/pool.hpp"

#include "app/corvaneapp.hpp"
#include "ui/kit/analogvu.hpp"
#include "ui/kit/eqgraph.hpp"
#include "ui/kit/valuecontrol.hpp"

#include "ui/pages/shared/room.hpp"

#include <QApplication>

#include <algorithm>
#include <fstream>
#include <vector>

namespace Bench {

using namespace Corvane;
using namespace Wendril;
using namespace std::chrono_literals;

namespace {

constexpr QSize large(1920, 1200);
constexpr auto still = 1500ms;   // in which what an action has started ends
constexpr auto givenBack = 16s;  // until when the window has given back what it no longer shows

// The program's style and fonts, and a window of the program that follows the chain at a port.
struct Live {
    explicit Live(const std::string& port)
        : chain(port)
        , opened(*chain.model, simple(Page::tone)) {}

    void show(const ShownPage& page) { page.showIn(*chain.model, opened.window.content()); }

    CorvaneApp dressed{{}};
    LiveChain chain;
    OpenWindow opened;
};

void leaveScene(Live& live, const std::string& folder) {
    std::ofstream places(folder + "/needles");
    for (QWidget* const meter : OnScreen::all<Kit::AnalogVU>(live.opened.window)) {
        const QRect place(meter->mapTo(&live.opened.window, QPoint()), meter->size());
        places << place.x() << ' ' << place.y() << ' ' << place.width() << ' ' << place.height() << '\n';
    }
    live.opened.window.grab().save(QString::fromStdString(folder + "/page.png"));
}

void measureTone(Live& live) {
    emptyPool();
    print("tone_percent", coreShare());
    print("tone_pool_threads", Tests::threadsOfThePool());
    print("tone_paints", paintEventsPerSecond());
    live.opened.window.resize(large);
    wait(still);
    print("tone_large_percent", coreShare());
    live.opened.window.resize(Room::usual);
    live.opened.window.showMinimized();
    wait(still);
    print("minimised_percent", coreShare());
    live.opened.window.hide();
    wait(still);
    print("hidden_percent", coreShare());
    live.opened.window.showNormal();
    wait(still);
}

// Of pages that have been seen.
void printChanges(AppModel& model, MainWindow& window) {
    const std::vector<ShownPage> all = pages();
    std::vector<double> changes;
    for (int round = 0; round < 2; ++round)
        for (const ShownPage& page : all) {
            changes.push_back(cpuMilliseconds([&] {
                page.showIn(model, window.content());
                wait(20ms);
            }));
        }
    print("page_change_ms", median(changes));
    print("page_change_worst_ms", *std::ranges::max_element(changes));
    all.front().showIn(model, window.content());
    wait(still);
    std::vector<double> resizes;
    for (int i = 1; i <= 10; ++i)
        resizes.push_back(cpuMilliseconds([&] {
            window.resize(Room::usual + QSize(13, 9) * i);
            wait(20ms);
        }));
    print("resize_ms", median(resizes));
    window.resize(Room::usual);
}

void measurePages(Live& live) {
    const std::vector<ShownPage> all = pages();
    for (const ShownPage& page : all) {
        live.show(page);
        wait(still);
        print("page_percent " + page.name, coreShare());
        print("page_paints " + page.name, paintEventsPerSecond());
        print("page_mb " + page.name, residentMegabytes());
    }
    printChanges(*live.chain.model, live.opened.window);
    wait(givenBack);
    print("all_pages_mb", residentMegabytes());
}

}  // namespace

void measureStart() {
    CorvaneApp program({});
    awaitPaint([&program] { program.start(); });
    print("first_window_ms", 1000 * cpuSeconds());
    print("offline_mb", residentMegabytes());
}

void measureWindow(const std::string& port, const std::string& scene) {
    Live live(port);
    wait(still);
    print("tone_mb", residentMegabytes());
    measureTone(live);
    measurePages(live);
    leaveScene(live, scene);
}

void measureChanges() {
    const CorvaneApp dressed({});
    StillChain chain;
    OpenWindow opened(*chain.model, simple(Page::tone));
    for (const ShownPage& page : pages()) {
        page.showIn(*chain.model, opened.window.content());
        settle();
    }
    printChanges(*chain.model, opened.window);
}

void traceWindow(const std::string& port) {
    Live live(port);
    wait(still);
    constexpr int frames = 120;
    const auto drag = [](QWidget& control, QPointF at) {
        Drag drag(control, at);
        for (int number = 1; number <= frames; ++number) {
            drag.move(number);
            wait(16ms);
        }
    };
    traced("tone", watch);
    traced("knob", [&] {
        auto& knob = OnScreen::find<Kit::ValueControl>(live.opened.window, "Graves");
        drag(knob, QRectF(knob.rect()).center());
    });
    live.show(technical({TechPage::Kind::output, 0}));
    wait(still);
    traced("handle", [&] {
        auto& graph = *OnScreen::all<Kit::EQGraph>(live.opened.window).at(0);
        drag(graph, graph.placeOf(graph.shownHandles().front()));
    });
}

void measureDrags() {
    constexpr int frames = 200;
    const CorvaneApp dressed({});
    StillChain chain;
    OpenWindow opened(*chain.model, simple(Page::tone));
    const auto perFrame = [](const char* name, const std::function<void(int)>& frame) {
        int number = 0;
        for (; number < 40; ++number)
            frame(number);
        emptyPool();
        print(name, cpuMilliseconds([&] {
                        for (; number < 40 + frames; ++number)
                            frame(number);
                    }) / frames);
        print(std::string(name) + "_pool_threads", Tests::threadsOfThePool());
    };
    const auto drag = [&](const char* name, QWidget& control, QPointF at) {
        Drag drag(control, at);
        perFrame(name, [&drag](int number) {
            drag.move(number);
            settle();
        });
    };
    auto& knob = OnScreen::find<Kit::ValueControl>(opened.window, "Graves");
    drag("knob_ms", knob, QRectF(knob.rect()).center());
    technical({TechPage::Kind::output, 0}).showIn(*chain.model, opened.window.content());
    settle();
    auto& graph = *OnScreen::all<Kit::EQGraph>(opened.window).at(0);
    drag("handle_ms", graph, graph.placeOf(graph.shownHandles().front()));
    technical({TechPage::Kind::crossover}).showIn(*chain.model, opened.window.content());
    settle();
    const std::uint8_t module = K7Q::index(ModuleKind::hpf, K7Q::outputs.front(), 0);
    perFrame("crossover_ms", [&](int number) {
        chain.model->set(module, {FilterValue{.fc = std::uint32_t(100 + number % 100), .type = 9}});
        settle();
    });
}

}  // namespace Bench
