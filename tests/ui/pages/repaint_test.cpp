#include "tests/ui/pages/desk.hpp"

#include <gtest/gtest.h>

#include <QBackingStore>

#include <algorithm>
#include <cstdlib>
#include <random>

using namespace Tests;

namespace {

/// Where the screen differs from a whole repaint. Where a point is no whole number of pixels, the toolkit
/// rounds the edges of a part otherwise, which makes a difference of one level.
QRect stale(QWidget& window) {
    const auto& screen = dynamic_cast<const QImage&>(*window.backingStore()->paintDevice());
    const QImage drawn = window.grab().toImage();
    const auto differ = [](QRgb a, QRgb b) {
        return a != b && std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                                   std::abs(qBlue(a) - qBlue(b))}) > 1;
    };
    QRect places;
    for (int y = 0; y < drawn.height(); ++y) {
        const auto* const there = reinterpret_cast<const QRgb*>(screen.constScanLine(y));
        const auto* const here = reinterpret_cast<const QRgb*>(drawn.constScanLine(y));
        for (int x = 0; x < drawn.width(); ++x)
            if (differ(there[x], here[x])) places |= QRect(x, y, 1, 1);
    }
    return places;
}

}  // namespace

// Only what has changed is repainted. Together it must be what a whole repaint draws.
TEST(RepaintTest, NothingOnTheScreenIsStaleWhateverTheUserDoes) {
    Desk desk("TOM", 3);
    std::mt19937 random(1);
    const auto below = [&random](std::size_t count) { return std::size_t(random() % count); };
    const auto point = [&](const QWidget& in) {
        return QPointF(double(below(std::size_t(in.width()))), double(below(std::size_t(in.height()))));
    };
    QWidget* dragged = nullptr;
    const auto press = [&] {
        const auto values = desk.all<Kit::ValueControl>();
        const auto graphs = desk.all<Kit::EQGraph>();
        const std::size_t which = below(values.size() + graphs.size());
        if (which < values.size()) {
            dragged = values[which];
            Hand::mouse(*dragged, QEvent::MouseButtonPress, QRectF(dragged->rect()).center());
        } else {
            Kit::EQGraph& graph = *graphs[which - values.size()];
            dragged = &graph;
            const auto& handles = graph.shownHandles();
            Hand::mouse(graph, QEvent::MouseButtonPress,
                        handles.empty() ? point(graph) : graph.placeOf(handles[below(handles.size())]));
        }
    };
    const auto release = [&] {
        if (dragged) Hand::mouse(*dragged, QEvent::MouseButtonRelease, point(*dragged));
        dragged = nullptr;
    };
    const std::pair<const char*, std::function<void()>> acts[] = {
        {"press", press},
        {"drag",
         [&] {
             if (dragged) Hand::mouse(*dragged, QEvent::MouseMove, point(*dragged));
         }},
        {"drag on",
         [&] {
             if (dragged) Hand::mouse(*dragged, QEvent::MouseMove, point(*dragged));
         }},
        {"release", release},
        {"hover",
         [&] {
             const auto controls = desk.all<Kit::Control>();
             Kit::Control& control = *controls[below(controls.size())];
             below(2) ? Hand::enter(control) : Hand::leave(control);
         }},
        {"focus",
         [&] {
             const auto controls = desk.all<Kit::Control>();
             controls[below(controls.size())]->setFocus(Qt::TabFocusReason);
         }},
        {"page",
         [&] {
             release();
             desk.until([&] { return !desk.model->status.value().isWorking(); });
             constexpr const char* tabs[] = {"TOM", "DINÂMICA", "DELAY", "MAIN", "X-OVER", "OUT 1", "IN 1"};
             desk.goTo(tabs[below(std::size(tabs))]);
         }},
        {"lock", [&] { desk.view.locked = !desk.view.locked.value(); }},
        {"speaker", [&] { desk.model->target = static_cast<std::uint8_t>(1 + below(3)); }},
        {"resize", [&] { desk.view.resize(1240 + int(below(500)), 780 + int(below(200))); }},
        {"music", [&] { desk.time.advance(100ms); }},
        {"link",
         [&] {
             release();
             desk.click(desk.shows("CONECTAR") ? "CONECTAR" : "DESCONECTAR");
         }},
    };
    for (int step = 0; step < 60; ++step) {
        const auto& [name, act] = acts[below(std::size(acts))];
        act();
        QApplication::processEvents();
        QApplication::processEvents();     // for layouts that others have changed
        QApplication::sendPostedEvents();  // for what timers have changed
        const QRect places = stale(desk.view);
        ASSERT_TRUE(places.isEmpty()) << "after " << step << ", " << name << ": " << places.x() << ' '
                                      << places.y() << ' ' << places.width() << ' ' << places.height();
    }
}
