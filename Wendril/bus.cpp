#include "Wendril/bus.hpp"

#include "Wendril/runtime/stream.hpp"

#include <algorithm>
#include <atomic>
#include <deque>
#include <optional>
#include <thread>
#include <utility>

namespace Wendril {

BusError BusError::timeout(std::uint8_t fun) {
    return {Case::timeout, fun, "A caixa não respondeu (função " + std::to_string(fun) + ")"};
}

BusError BusError::rejected(std::uint8_t fun) {
    return {Case::rejected, fun, "A caixa recusou o comando (função " + std::to_string(fun) + ")"};
}

BusError BusError::closed() { return {Case::closed, 0, "Conexão fechada"}; }

BusError::BusError(Case errorCase, std::uint8_t code, std::string text)
    : errorCase(errorCase)
    , code(code)
    , text(std::make_shared<const std::string>(std::move(text))) {}

namespace {

std::uint8_t functionOf(ByteView frame) { return frame.size() >= 4 ? frame[3] : 0; }

}  // namespace

// The bus's state, confined to its executor. Requests keep it alive to their end; the pump, the
// timers and the transport's callbacks hold it weakly.
class Bus::Core : public std::enable_shared_from_this<Core> {
public:
    Core(std::shared_ptr<Transport> transport, std::shared_ptr<Executor> executor)
        : transport(std::move(transport))
        , executor(std::move(executor)) {}
    ~Core() { transport->close(); }
    Core(const Core&) = delete;
    Core& operator=(const Core&) = delete;

    static Task<void> setLogger(std::shared_ptr<Core> self, Logger logger);
    static Task<void> onClose(std::shared_ptr<Core> self, CloseHandler handler);
    static Task<void> open(std::shared_ptr<Core> self);
    static Task<void> close(std::shared_ptr<Core> self);
    static Task<Frame> request(std::shared_ptr<Core> self, Bytes frame, Duration timeout, int retries,
                               Match match);

    void abandon();

private:
    // The request now waiting for its reply. It lives in the request's coroutine.
    struct Waiter {
        Waiter(Core& core, const Match& match)
            : core(core)
            , match(match) {}
        ~Waiter() {
            if (core.waiter == this) core.waiter = nullptr;
        }
        Waiter(const Waiter&) = delete;
        Waiter& operator=(const Waiter&) = delete;

        Core& core;
        const Match& match;
        TimePoint deadline;
        std::weak_ptr<OneShotEvent> place;  // owned by the alarm
        std::optional<Frame> reply;
        bool closed = false;
    };

    // The timer of whoever waits: set anew only when it rings before the deadline of that time. One
    // for each attempt would leave thousands a second behind on a fast line.
    struct Alarm {
        TimePoint due;
        std::shared_ptr<OneShotEvent> place;
    };

    // A request's turn on the line. Awaiting it waits for the line; its end, however it comes,
    // passes the line on.
    class LineLock {
    public:
        explicit LineLock(Core& core)
            : core(core) {}
        ~LineLock() {
            if (holdsLine) core.release();
        }
        LineLock(const LineLock&) = delete;
        LineLock& operator=(const LineLock&) = delete;

        bool await_ready() {
            if (core.busy) return false;
            core.busy = holdsLine = true;
            return true;
        }
        template <detail::OfThisRuntime Promise>
        void await_suspend(std::coroutine_handle<Promise> task) {
            core.queue.push_back({this, Continuation(task.promise())});
        }
        void await_resume() const noexcept {}

        bool holdsLine = false;

    private:
        Core& core;
    };

    struct Queued {
        LineLock* turn;
        Continuation caller;
    };

    // Marks the time during which the transport may block the executor.
    class Blocking {
    public:
        explicit Blocking(Core& core)
            : core(core) {
            core.blocked = true;
        }
        ~Blocking() { core.blocked = false; }
        Blocking(const Blocking&) = delete;
        Blocking& operator=(const Blocking&) = delete;

    private:
        Core& core;
    };

    static Task<void> pump(std::weak_ptr<Core> weakCore, StreamReader<Bytes> chunks, std::uint64_t period);

    void unblock();
    void release();
    void send(const Bytes& frame);
    void expect(Waiter& next, Duration timeout);
    void ingest(const Bytes& chunk);
    void set(const std::shared_ptr<Alarm>& alarm, TimePoint due);
    void ring(const std::shared_ptr<Alarm>& alarm);
    void resumeWaiter();
    void closed(std::uint64_t endedPeriod, const std::exception_ptr& error);

    const std::shared_ptr<Transport> transport;
    const std::shared_ptr<Executor> executor;
    FrameParser parser;
    Waiter* waiter = nullptr;
    std::weak_ptr<Alarm> currentAlarm;
    bool busy = false;
    std::deque<Queued> queue;
    bool isOpen = false;
    std::uint64_t period = 0;  // counts the openings: a late report of an earlier one is ignored
    Logger logger;
    CloseHandler closeHandler;
    std::atomic<bool> blocked = false;
    std::atomic<bool> abandoned = false;
    std::atomic<std::uint64_t> closings = 0;  // counts the requests to close
};

Task<void> Bus::Core::setLogger(std::shared_ptr<Core> self, Logger logger) {
    co_await resumeOn(self->executor);
    self->logger = std::move(logger);
}

Task<void> Bus::Core::onClose(std::shared_ptr<Core> self, CloseHandler handler) {
    co_await resumeOn(self->executor);
    self->closeHandler = std::move(handler);
}

// A close that is asked for after the opening wins over it, however far the opening is.
Task<void> Bus::Core::open(std::shared_ptr<Core> self) {
    const std::uint64_t closingsBefore = self->closings;
    co_await resumeOn(self->executor);
    if (self->isOpen) co_return;
    const std::uint64_t period = ++self->period;
    const auto stream = makeStream<Bytes>();
    auto onData = [writer = stream.first](ByteView data) { writer.push(Bytes(data.begin(), data.end())); };
    auto onClose = [writer = stream.first, weakCore = std::weak_ptr(self),
                    period](const std::exception_ptr& error) {
        writer.finish();
        const auto core = weakCore.lock();
        if (!core) return;
        core->executor->post([weakCore, period, error] {
            if (const auto core = weakCore.lock()) core->closed(period, error);
        });
    };
    {
        const Blocking mark(*self);
        if (self->abandoned || self->closings != closingsBefore) throw BusError::closed();
        self->transport->open(std::move(onData), std::move(onClose));
    }
    self->parser.reset();
    self->isOpen = true;
    spawn(self->executor, pump(self, stream.second, period));
}

Task<void> Bus::Core::close(std::shared_ptr<Core> self) {
    self->unblock();
    co_await resumeOn(self->executor);
    self->transport->close();
    self->closed(self->period, nullptr);
}

// The owner is gone: nobody is left to be told.
void Bus::Core::abandon() {
    abandoned = true;
    unblock();
    executor->post([self = shared_from_this()] {
        self->logger = nullptr;
        self->closeHandler = nullptr;
        self->transport->close();
        self->closed(self->period, nullptr);
    });
}

Task<Frame> Bus::Core::request(std::shared_ptr<Core> self, Bytes frame, Duration timeout, int retries,
                               Match match) {
    co_await resumeOn(self->executor);
    LineLock turn(*self);
    co_await turn;
    for (int resendsLeft = std::max(retries, 0);; --resendsLeft) {
        Waiter waiter(*self, match);
        self->send(frame);
        self->expect(waiter, timeout);
        if (auto* const place = waiter.place.lock().get()) co_await place->park();
        if (waiter.reply) co_return *std::move(waiter.reply);
        if (waiter.closed) throw BusError::closed();
        if (resendsLeft == 0) throw BusError::timeout(functionOf(frame));
    }
}

Task<void> Bus::Core::pump(std::weak_ptr<Core> weakCore, StreamReader<Bytes> chunks, std::uint64_t period) {
    for (;;) {
        const std::optional<Bytes> chunk = co_await chunks.next();
        if (!chunk) co_return;
        const auto core = weakCore.lock();
        if (!core || !core->isOpen || core->period != period) co_return;
        core->ingest(*chunk);
    }
}

// Ends an `open` or `write` that holds the executor: closing the transport from here makes it
// return. It may be about to begin and not have seen the first close, so there are a few.
void Bus::Core::unblock() {
    ++closings;
    for (int attempt = 0; attempt < 100 && blocked; ++attempt) {
        transport->close();
        std::this_thread::sleep_for(std::chrono::microseconds(100));
    }
}

void Bus::Core::release() {
    if (queue.empty()) {
        busy = false;
        return;
    }
    Queued next = std::move(queue.front());
    queue.pop_front();
    next.turn->holdsLine = true;
    std::move(next.caller).post();
}

void Bus::Core::send(const Bytes& frame) {
    if (!isOpen) throw BusError::closed();
    if (logger) logger("-> " + hex(frame));
    const Blocking mark(*this);
    transport->write(frame);
}

void Bus::Core::expect(Waiter& next, Duration timeout) {
    waiter = &next;
    next.deadline = executor->now() + timeout;
    auto place = std::make_shared<OneShotEvent>();
    next.place = place;
    auto alarm = currentAlarm.lock();
    if (!alarm || alarm->due > next.deadline) {
        alarm = std::make_shared<Alarm>();
        currentAlarm = alarm;
        set(alarm, next.deadline);
    }
    alarm->place = std::move(place);
}

void Bus::Core::set(const std::shared_ptr<Alarm>& alarm, TimePoint due) {
    alarm->due = due;
    executor->postAfter(due - executor->now(), [alarm, weakCore = weak_from_this()] {
        if (const auto core = weakCore.lock()) core->ring(alarm);
    });
}

void Bus::Core::ring(const std::shared_ptr<Alarm>& alarm) {
    if (!waiter || currentAlarm.lock() != alarm) return;
    if (waiter->deadline > executor->now()) return set(alarm, waiter->deadline);
    resumeWaiter();
}

void Bus::Core::ingest(const Bytes& chunk) {
    parser.feed(chunk, [this](Frame& frame) {
        if (logger) logger("<- " + hex(FrameCodec::encode(frame, false, {})));
        if (!waiter || !waiter->match(frame)) return;
        waiter->reply = std::move(frame);
        resumeWaiter();
    });
}

void Bus::Core::resumeWaiter() {
    if (const auto place = std::exchange(waiter, nullptr)->place.lock()) place->resume();
}

void Bus::Core::closed(std::uint64_t endedPeriod, const std::exception_ptr& error) {
    if (!isOpen || endedPeriod != period) return;
    isOpen = false;
    if (waiter) {
        waiter->closed = true;
        resumeWaiter();
    }
    if (closeHandler) closeHandler(error);
}

Bus::Bus(std::shared_ptr<Transport> transport, std::shared_ptr<Executor> executor)
    : transport(std::move(transport))
    , executor(executor ? std::move(executor) : this->transport->queue())
    , core(std::make_shared<Core>(this->transport, this->executor)) {}

Bus::~Bus() { core->abandon(); }

void Bus::abandon() { core->abandon(); }

Task<void> Bus::setLogger(Logger logger) { return Core::setLogger(core, std::move(logger)); }

Task<void> Bus::onClose(CloseHandler handler) { return Core::onClose(core, std::move(handler)); }

Task<void> Bus::open() { return Core::open(core); }

Task<void> Bus::close() { return Core::close(core); }

Task<Frame> Bus::request(Bytes frame, Duration timeout, int retries, Match match) {
    return Core::request(core, std::move(frame), timeout, retries, std::move(match));
}

}  // namespace Wendril
