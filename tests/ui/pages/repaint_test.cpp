#include "tests/ui/kit/frames.hpp"
#include "tests/ui/pages/desk.hpp"

#include <gtest/gtest.h>

#include <QBackingStore>

#include <algorithm>
#include <cstdlib>
#include <random>

using namespace Tests;

namespace {

constexpr const char* tabs[] = {"TOM", "DINÂMICA", "DELAY", "MAIN", "X-OVER", "OUT 1", "IN 1"};

/// Where the screen differs from a whole repaint. Where a point is no whole number of pixels, the toolkit
/// rounds the edges of a part otherwise, which makes a difference of one level.
QRect stale(QWidget& window) {
    const auto& screen = dynamic_cast<const QImage&>(*window.backingStore()->paintDevice());
    // At another ratio all widgets draw their kept pictures anew, and once more at this one.
    QImage small(window.size() / 2, QImage::Format_RGB32);
    small.setDevicePixelRatio(0.5);
    window.render(&small);
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
    Frames frames;
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
        if (graphs.empty() || below(2)) {
            dragged = values[below(values.size())];
            return Hand::mouse(*dragged, QEvent::MouseButtonPress, QRectF(dragged->rect()).center());
        }
        dragged = graphs[0];
        const auto& handles = graphs[0]->shownHandles();
        Hand::mouse(*dragged, QEvent::MouseButtonPress,
                    handles.empty() ? point(*dragged) : graphs[0]->placeOf(handles[below(handles.size())]));
    };
    const auto drag = [&] {
        if (!dragged) press();
        Hand::mouse(*dragged, QEvent::MouseMove, point(*dragged));
    };
    const auto release = [&] {
        if (dragged) Hand::mouse(*dragged, QEvent::MouseButtonRelease, point(*dragged));
        dragged = nullptr;
    };
    const std::pair<const char*, std::function<void()>> acts[] = {
        {"drag", drag},
        {"drag on", drag},
        {"drag further", drag},
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
             desk.goTo(tabs[below(std::size(tabs))]);
         }},
        {"lock", [&] { desk.view.locked = below(3) == 0; }},
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
        frames.pass(40);
        QApplication::sendPostedEvents();  // for what timers have changed
        const QRect places = stale(desk.view);
        ASSERT_TRUE(places.isEmpty()) << "after " << step << ", " << name << ": " << places.x() << ' '
                                      << places.y() << ' ' << places.width() << ' ' << places.height();
    }
}
