#include "simulator/virtualtime.hpp"

#include <algorithm>
#include <map>
#include <set>
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
        const auto found = std::ranges::find_if(
            entries, [this](const auto& entry) { return !blocked.contains(entry.second.executor); });
        if (found == entries.end() || found->first > limit) return false;
        auto next = entries.extract(found);
        now = std::max(now, next.key());
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
    std::size_t size() const { return entries.size(); }

    const void* current = nullptr;  // the executor whose work is running
    std::set<const void*> blocked;

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
    agenda->now = std::max(agenda->now, end);
}

void VirtualTime::block(Duration duration) {
    const void* const executor = agenda->current;
    agenda->blocked.insert(executor);
    advance(duration);
    agenda->blocked.erase(executor);
}

std::size_t VirtualTime::waiting() const { return agenda->size(); }

}  // namespace Simulator
