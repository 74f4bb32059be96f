#include "simulator/virtualtime.hpp"

#include <algorithm>
#include <map>
#include <utility>

namespace Simulator {

using Wendril::Duration;
using Wendril::TimePoint;
using Wendril::UniqueFunction;

// The posted work by due time. Work with the same due time keeps the order in which it was posted.
class VirtualTime::Agenda {
public:
    void add(TimePoint due, const void* executor, UniqueFunction work) {
        if (!ended) entries.emplace(std::max(due, now), Entry{executor, std::move(work)});
    }

    bool runNext(TimePoint limit) {
        if (entries.empty() || entries.begin()->first > limit) return false;
        auto next = entries.extract(entries.begin());
        now = next.key();
        const void* const outer = std::exchange(current, next.mapped().executor);
        next.mapped().work();
        current = outer;
        return true;
    }

    // The destructor of dropped work may post new work; `ended` drops that, too.
    void end() {
        ended = true;
        entries.clear();
    }

    TimePoint now{};
    const void* current = nullptr;  // the executor whose work is running

private:
    struct Entry {
        const void* executor;
        UniqueFunction work;
    };

    std::multimap<TimePoint, Entry> entries;
    bool ended = false;
};

class VirtualTime::ClockExecutor final : public Wendril::Executor {
public:
    explicit ClockExecutor(std::shared_ptr<Agenda> agenda)
        : agenda(std::move(agenda)) {}

    void post(UniqueFunction work) override { agenda->add(agenda->now, this, std::move(work)); }
    void postAfter(Duration delay, UniqueFunction work) override {
        agenda->add(Wendril::timeAfter(agenda->now, delay), this, std::move(work));
    }
    bool isCurrent() const override { return agenda->current == this; }
    TimePoint now() const override { return agenda->now; }

private:
    const std::shared_ptr<Agenda> agenda;
};

VirtualTime::VirtualTime()
    : agenda(std::make_shared<Agenda>()) {}

VirtualTime::~VirtualTime() { agenda->end(); }

std::shared_ptr<Wendril::Executor> VirtualTime::executor() { return std::make_shared<ClockExecutor>(agenda); }

TimePoint VirtualTime::now() const { return agenda->now; }

Duration VirtualTime::elapsed() const { return now() - TimePoint{}; }

void VirtualTime::runUntilIdle() {
    while (agenda->runNext(TimePoint::max())) {
    }
}

bool VirtualTime::runUntil(const std::function<bool()>& done) {
    while (!done())
        if (!agenda->runNext(TimePoint::max())) return done();
    return true;
}

void VirtualTime::advance(Duration duration) {
    const TimePoint end = Wendril::timeAfter(now(), duration);
    while (agenda->runNext(end)) {
    }
    agenda->now = end;
}

}  // namespace Simulator
