#include "Wendril/runtime/serialqueue.hpp"

#include "Wendril/runtime/wakeup.hpp"

#include <poll.h>
#include <pthread.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <ctime>
#include <map>
#include <mutex>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Wendril {

namespace {

// Functions that post others to the same queue run in rounds without a system call between them. The
// limit gives descriptors and timers their turn when the functions never end.
constexpr int roundsBetweenPolls = 64;

timespec toTimespec(Duration duration) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(duration);
    return {static_cast<time_t>(seconds.count()), static_cast<long>((duration - seconds).count())};
}

}  // namespace

class SerialQueue::Loop {
public:
    void run() {
        current = this;
        while (!stopped.load(std::memory_order_relaxed)) {
            for (int round = 0; round < roundsBetweenPolls && runPosted(); ++round) {
            }
            runTimers();
            if (!stopped.load(std::memory_order_relaxed)) waitForEvents();
        }
        drop();
    }

    void post(UniqueFunction function) {
        bool wake = false;
        {
            const std::scoped_lock lock(mutex);
            posted.push_back(std::move(function));
            wake = std::exchange(asleep, false);
        }
        if (wake) wakeup.raise();
    }

    void stop() {
        stopped.store(true, std::memory_order_relaxed);
        post([] {});
    }

    bool isCurrent() const { return current == this; }

    // Timers and watches belong to the loop's thread. Other threads post a function that calls these.
    void addTimer(TimePoint due, UniqueFunction function) {
        timers.emplace_hint(timers.end(), due, std::move(function));
    }

    void addWatch(WatchId id, int descriptor, short events, Ready ready) {
        watches.emplace(id, Watch{descriptor, events, std::make_shared<Ready>(std::move(ready))});
        pollListStale = true;
    }

    void changeWatch(WatchId id, short events) {
        const auto found = watches.find(id);
        if (found == watches.end()) return;
        found->second.events = events;
        pollListStale = true;
    }

    void removeWatch(WatchId id) {
        watches.erase(id);
        pollListStale = true;
    }

    WatchId newWatchId() { return nextWatch.fetch_add(1, std::memory_order_relaxed); }

private:
    struct Watch {
        int descriptor;
        short events;
        std::shared_ptr<Ready> ready;  // kept by `dispatch` during a call that ends this watch
    };

    bool runPosted() {
        {
            const std::scoped_lock lock(mutex);
            std::swap(posted, batch);
        }
        if (batch.empty()) return false;
        for (UniqueFunction& function : batch) {
            if (stopped.load(std::memory_order_relaxed)) break;
            function();
            function = {};
        }
        batch.clear();
        return true;
    }

    void runTimers() {
        if (timers.empty()) return;
        const TimePoint now = std::chrono::steady_clock::now();
        while (!timers.empty() && timers.begin()->first <= now && !stopped.load(std::memory_order_relaxed)) {
            auto timer = timers.extract(timers.begin());
            timer.mapped()();
        }
    }

    void waitForEvents() {
        if (pollListStale) listDescriptors();
        std::optional<timespec> limit;
        if (!timers.empty())
            limit = toTimespec(
                std::max(Duration::zero(), timers.begin()->first - std::chrono::steady_clock::now()));
        {
            const std::scoped_lock lock(mutex);
            asleep = posted.empty();
            if (!asleep) limit = timespec{};
        }
        const int ready = ::ppoll(pollList.data(), pollList.size(), limit ? &*limit : nullptr, nullptr);
        {
            const std::scoped_lock lock(mutex);
            asleep = false;
        }
        if (ready > 0) dispatch();
    }

    void listDescriptors() {
        pollList.assign(1, {wakeup.descriptor(), POLLIN, 0});
        pollIds.assign(1, 0);
        for (const auto& [id, watch] : watches) {
            pollList.push_back({watch.descriptor, watch.events, 0});
            pollIds.push_back(id);
        }
        pollListStale = false;
    }

    void dispatch() {
        if (pollList.front().revents != 0) wakeup.clear();
        for (std::size_t i = 1; i < pollList.size() && !stopped.load(std::memory_order_relaxed); ++i) {
            if (pollList[i].revents == 0) continue;
            const auto found = watches.find(pollIds[i]);
            if (found == watches.end()) continue;
            const auto ready = found->second.ready;
            (*ready)(pollList[i].revents);
        }
    }

    // A dropped function may hold objects that post others or set timers as they are destroyed. So the
    // lists that these calls change are moved away before they are destroyed, until they stay empty.
    void drop() {
        watches.clear();
        while (!timers.empty()) {
            const auto dropped = std::exchange(timers, {});
        }
        for (;;) {
            batch.clear();
            const std::scoped_lock lock(mutex);
            if (posted.empty()) break;
            std::swap(posted, batch);
        }
        current = nullptr;
    }

    static thread_local const Loop* current;

    Wakeup wakeup;
    std::atomic<bool> stopped = false;
    std::atomic<WatchId> nextWatch = 1;

    std::mutex mutex;
    std::vector<UniqueFunction> posted;  // guarded by mutex, as is the next
    bool asleep = false;

    // The rest belongs to the loop's thread.
    std::vector<UniqueFunction> batch;
    std::multimap<TimePoint, UniqueFunction> timers;  // of equal times in the order of setting
    std::unordered_map<WatchId, Watch> watches;
    std::vector<pollfd> pollList;
    std::vector<WatchId> pollIds;
    bool pollListStale = true;
};

thread_local const SerialQueue::Loop* SerialQueue::Loop::current = nullptr;

SerialQueue::SerialQueue(const std::string& name)
    : loop(std::make_shared<Loop>())
    , thread([loop = loop] { loop->run(); }) {
    constexpr std::size_t longestThreadName = 15;
    ::pthread_setname_np(thread.native_handle(), name.substr(0, longestThreadName).c_str());
}

// A function that runs on the queue and destroys it cannot wait for the queue's thread. The thread
// shares the loop and ends by itself once that function has returned.
SerialQueue::~SerialQueue() {
    loop->stop();
    if (loop->isCurrent())
        thread.detach();
    else
        thread.join();
}

void SerialQueue::post(UniqueFunction function) { loop->post(std::move(function)); }

void SerialQueue::postAfter(Duration delay, UniqueFunction function) {
    const TimePoint due = timeAfter(now(), delay);
    if (isCurrent()) return loop->addTimer(due, std::move(function));
    loop->post([loop = loop.get(), due, function = std::move(function)]() mutable {
        loop->addTimer(due, std::move(function));
    });
}

bool SerialQueue::isCurrent() const { return loop->isCurrent(); }

TimePoint SerialQueue::now() const { return std::chrono::steady_clock::now(); }

SerialQueue::WatchId SerialQueue::watch(int descriptor, short events, Ready ready) {
    const WatchId id = loop->newWatchId();
    post([loop = loop.get(), id, descriptor, events, ready = std::move(ready)]() mutable {
        loop->addWatch(id, descriptor, events, std::move(ready));
    });
    return id;
}

void SerialQueue::setEvents(WatchId id, short events) {
    post([loop = loop.get(), id, events] { loop->changeWatch(id, events); });
}

void SerialQueue::unwatch(WatchId id) {
    post([loop = loop.get(), id] { loop->removeWatch(id); });
}

}  // namespace Wendril
