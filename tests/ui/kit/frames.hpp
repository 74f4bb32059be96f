#pragma once

#include <QAnimationDriver>
#include <QApplication>

/// The frames of a screen, as fast as the test wants them.
struct Frames : QAnimationDriver {
    qint64 now = 0;

    Frames() { install(); }
    ~Frames() override { uninstall(); }
    qint64 elapsed() const override { return now; }

    void pass(int ms) {
        for (const qint64 end = now + ms; now < end; advance())
            QApplication::processEvents(), now += 10;
        QApplication::processEvents();
    }
};
