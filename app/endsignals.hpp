#pragma once

#include "Wendril/runtime/wakeup.hpp"

#include <QSocketNotifier>

#include <functional>

namespace Corvane {

/// Turns SIGTERM, SIGINT and SIGHUP into calls of a function on the event loop. One object at a time.
class EndSignals {
public:
    explicit EndSignals(std::function<void()> end);
    ~EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

private:
    const Wendril::Wakeup wakeup;
    QSocketNotifier notifier;
};

}  // namespace Corvane
