#include "app/endsignals.hpp"

#include <atomic>
#include <csignal>
#include <utility>

namespace Corvane {

namespace {

constexpr int sameEndMs = 200;
constexpr int endingSignals[] = {SIGTERM, SIGINT, SIGHUP};

std::atomic<const Wendril::Wakeup*> raised = nullptr;

// A handler may do little more than write to a pipe.
void onSignal(int) {
    if (const auto* const wakeup = raised.load()) wakeup->raise();
}

}  // namespace

EndSignals::EndSignals(std::function<void()> end)
    : notifier(wakeup.descriptor(), QSocketNotifier::Read) {
    QObject::connect(&notifier, &QSocketNotifier::activated, &notifier, [this, end = std::move(end)] {
        wakeup.clear();
        if (!sameEnd.hasExpired()) return;
        sameEnd.setRemainingTime(sameEndMs);
        end();
    });
    raised = &wakeup;
    for (const int number : endingSignals)
        std::signal(number, onSignal);
}

EndSignals::~EndSignals() {
    for (const int number : endingSignals)
        std::signal(number, SIG_DFL);
    raised = nullptr;
}

}  // namespace Corvane
