// The headers of the platform that most sources include, compiled once for each target of a sanitizer's
// build.
#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <coroutine>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>
#ifdef QT_CORE_LIB
#include <QCoreApplication>
#include <QObject>
#include <QString>
#endif
#ifdef QT_WIDGETS_LIB
#include <QApplication>
#include <QBoxLayout>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPointer>
#include <QWidget>
#endif
#ifdef CORVANE_TEST
#include <gtest/gtest.h>
#endif
