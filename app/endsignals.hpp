#pragma once

#include "Wendril/runtime/wakeup.hpp"

#include <QDeadlineTimer>
#include <QSocketNotifier>

#include <functional>

namespace Corvane {

/// Turns SIGTERM, SIGINT and SIGHUP into calls of a function on the event loop. One object at a time.
/// Signals that follow each other at once count as one: a shell that closes sends SIGHUP beside that of its
/// terminal, and a session that ends sends several.
class EndSignals {
public:
    explicit EndSignals(std::function<void()> end);
    ~EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

private:
    const Wendril::Wakeup wakeup;
    QSocketNotifier notifier;
    QDeadlineTimer sameEnd;
};

}  // namespace Corvane
