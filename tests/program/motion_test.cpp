#include "app/motion.hpp"

#include <gtest/gtest.h>

TEST(MotionTest, IsReducedByWhatTheDesktopsHaveForIt) {
    const struct {
        const char *nameSpace, *key;
        QVariant value;
        bool reduced;
    } cases[] = {
        {"org.freedesktop.appearance", "reduced-motion", 1U, true},
        {"org.freedesktop.appearance", "reduced-motion", 0U, false},
        {"org.gnome.desktop.interface", "enable-animations", false, true},
        {"org.gnome.desktop.interface", "enable-animations", true, false},
        {"org.gnome.desktop.interface", "font-name", "", false},
        {"org.kde.kdeglobals.KDE", "AnimationDurationFactor", "0", true},
        {"org.kde.kdeglobals.KDE", "AnimationDurationFactor", "0.5", false},
        {"org.kde.kdeglobals.KDE", "AnimationDurationFactor", "", false},
    };
    for (const auto& [nameSpace, key, value, reduced] : cases)
        EXPECT_EQ(Corvane::Motion::isReducedBy({{nameSpace, {{key, value}}}}), reduced)
            << key << ' ' << qPrintable(value.toString());
}
