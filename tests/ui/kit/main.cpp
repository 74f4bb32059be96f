#include "ui/kit/accessibility.hpp"

#include <gtest/gtest.h>

#include <QApplication>

int main(int count, char** arguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(count, arguments);
    Kit::installAccessibility();
    testing::InitGoogleTest(&count, arguments);
    return RUN_ALL_TESTS();
}
