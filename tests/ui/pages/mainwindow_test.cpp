#include "tests/app/rig.hpp"
#include "tests/ui/kit/hand.hpp"

#include "ui/pages/shell/mainwindow.hpp"

#include <gtest/gtest.h>

using namespace Tests;

// Whatever the model is doing, the window goes without a trace, and then the model.
TEST(MainWindowTest, ClosesAtAnyMoment) {
    for (int steps = 0; steps < 4000; steps += 97) {
        Rig rig(chainOf(2));
        auto window = std::make_unique<MainWindow>(*rig.model, true);
        window->show();
        rig.model->start(rig.model->connect());
        rig.steps(steps);
        rig.model->setTone(ToneBand::mid, 3);
        window->close();
        window.reset();
        rig.steps(steps % 7);
        rig.model.reset();
        rig.steps(200);
        EXPECT_EQ(rig.line->summary().faults, std::vector<std::string>{}) << steps;
    }
}

TEST(MainWindowTest, KeepsItsSmallestSize) {
    const Rig rig;
    MainWindow window(*rig.model, true);
    window.show();
    window.resize(300, 200);
    EXPECT_EQ(window.size(), ContentView::smallest);
    EXPECT_EQ(window.content().size(), ContentView::smallest);
}
