#include "Wendril/bus.hpp"

#include "Wendril/runtime/stream.hpp"

#include <algorithm>
#include <deque>
#include <mutex>
#include <optional>
#include <stop_token>
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

std::uint8_t addressOf(ByteView frame) { return u8(frame, 2); }
std::uint8_t functionOf(ByteView frame) { return u8(frame, 3); }

}  // namespace

// The bus's state, confined to its executor. A request shares it until it ends. The pump, the timer
// and the transport's callbacks refer to it weakly, so that they do not keep a dropped bus alive.
class Bus::Core : public std::enable_shared_from_this<Core> {
public:
    Core(std::shared_ptr<Transport> transport, std::shared_ptr<Executor> executor,
         std::shared_ptr<LineRecord> record)
        : transport(std::move(transport))
        , executor(std::move(executor))
        , record(std::move(record)) {}
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
    // Passes the line on at the end of its scope, if it holds the line by then. It is made before the
    // request waits for the line, so that a request destroyed while it waits passes the line on, too.
    class LineLock {
    public:
        explicit LineLock(Core& core)
            : core(core) {}
        ~LineLock() {
            if (holdsLine) core.release();
        }
        LineLock(const LineLock&) = delete;
        LineLock& operator=(const LineLock&) = delete;

        bool holdsLine = false;

    private:
        Core& core;
    };

    struct Queued {
        LineLock* lock;
        Continuation caller;
    };

    // The attempt that waits for its reply. It lives in the coroutine of `exchange`.
    struct Waiter {
        Waiter(Core& core, const Match& match, TimePoint deadline)
            : core(core)
            , match(match)
            , deadline(deadline) {
            core.waiter = this;
        }
        ~Waiter() {
            if (core.waiter == this) core.waiter = nullptr;
        }
        Waiter(const Waiter&) = delete;
        Waiter& operator=(const Waiter&) = delete;

        Core& core;
        const Match& match;
        const TimePoint deadline;
        std::weak_ptr<OneShotEvent> ended;  // owned by the timer
        std::optional<Frame> reply;
        bool closed = false;
    };

    // One timer serves all attempts. When it fires early it is re-armed for the current deadline, so
    // that a fast line does not pile up timers.
    struct Timer {
        TimePoint due;
        std::shared_ptr<OneShotEvent> attemptEnded;
    };

    auto acquire(LineLock& lock) {
        return detail::Suspension{[this, &lock](TaskContext& task) {
                                      if (std::exchange(busy, true)) {
                                          queue.push_back({&lock, Continuation(task)});
                                          return true;
                                      }
                                      lock.holdsLine = true;
                                      return false;
                                  },
                                  [] {}};
    }
    void release();
    Task<std::optional<Frame>> exchange(const Bytes& frame, Duration timeout, const Match& match, bool again);
    void write(TimePoint at, const Bytes& frame, bool again);
    void startTimer(Waiter& attempt);
    void arm(const std::shared_ptr<Timer>& timer, TimePoint due);
    void expire(const std::shared_ptr<Timer>& timer);
    void resumeWaiter();
    static Task<void> pump(std::weak_ptr<Core> weakCore, StreamReader<Bytes> chunks,
                           std::uint64_t generation);
    void ingest(const Bytes& chunk);
    void giveUpStalledFrame();
    std::size_t receive(Frame& frame);
    std::stop_token tokenForOpening();
    void stopTransport();
    void closed(std::uint64_t endedGeneration, const std::exception_ptr& error);

    const std::shared_ptr<Transport> transport;
    const std::shared_ptr<Executor> executor;
    const std::shared_ptr<LineRecord> record;
    FrameParser parser;
    TimePoint lastChunk;  // when the latest bytes were received
    Waiter* waiter = nullptr;
    std::weak_ptr<Timer> currentTimer;
    bool busy = false;
    std::deque<Queued> queue;
    bool isOpen = false;
    std::uint64_t generation = 0;  // counts the openings: reports and bytes of an earlier one are ignored
    Logger logger;
    CloseHandler closeHandler;

    std::mutex mutex;
    std::stop_source openings;  // guarded by mutex, as is the next; stops the openings asked for so far
    bool abandoned = false;
};

Task<void> Bus::Core::setLogger(std::shared_ptr<Core> self, Logger logger) {
    co_await resumeOn(self->executor);
    self->logger = std::move(logger);
}

Task<void> Bus::Core::onClose(std::shared_ptr<Core> self, CloseHandler handler) {
    co_await resumeOn(self->executor);
    self->closeHandler = std::move(handler);
}

Task<void> Bus::Core::open(std::shared_ptr<Core> self) {
    const std::stop_token stop = self->tokenForOpening();
    co_await resumeOn(self->executor);
    if (self->isOpen) co_return;
    if (stop.stop_requested()) throw BusError::closed();
    const std::uint64_t generation = ++self->generation;
    const auto stream = makeStream<Bytes>();
    auto onData = [writer = stream.first](ByteView data) { writer.push(Bytes(data.begin(), data.end())); };
    auto onClose = [writer = stream.first, weakCore = std::weak_ptr(self),
                    generation](const std::exception_ptr& error) {
        writer.finish();
        const auto core = weakCore.lock();
        if (!core) return;
        core->executor->post([weakCore, generation, error] {
            if (const auto core = weakCore.lock()) core->closed(generation, error);
        });
    };
    self->transport->cancellableOpen(std::move(onData), std::move(onClose), stop);
    self->parser.reset();
    self->isOpen = true;
    spawn(self->executor, pump(self, stream.second, generation));
}

Task<void> Bus::Core::close(std::shared_ptr<Core> self) {
    self->stopTransport();
    co_await resumeOn(self->executor);
    self->transport->close();
    self->closed(self->generation, nullptr);
}

// The owner is gone, so logger and close handler are not called any more.
void Bus::Core::abandon() {
    {
        const std::scoped_lock lock(mutex);
        abandoned = true;
    }
    stopTransport();
    executor->post([self = shared_from_this()] {
        self->logger = nullptr;
        self->closeHandler = nullptr;
        self->transport->close();
        self->closed(self->generation, nullptr);
    });
}

Task<Frame> Bus::Core::request(std::shared_ptr<Core> self, Bytes frame, Duration timeout, int retries,
                               Match match) {
    co_await resumeOn(self->executor);
    LineLock lock(*self);
    co_await self->acquire(lock);
    const int resends = std::max(retries, 0);
    for (int resendsLeft = resends;; --resendsLeft) {
        auto reply = co_await self->exchange(frame, timeout, match, resendsLeft < resends);
        if (reply) co_return *std::move(reply);
        if (resendsLeft == 0) throw BusError::timeout(functionOf(frame));
    }
}

void Bus::Core::release() {
    if (queue.empty()) {
        busy = false;
        return;
    }
    Queued next = std::move(queue.front());
    queue.pop_front();
    next.lock->holdsLine = true;
    std::move(next.caller).post();
}

// One attempt: sends `frame` and waits for its reply. None when the time-out comes first. The
// references are to the coroutine of `request`, which awaits this one.
Task<std::optional<Frame>> Bus::Core::exchange(const Bytes& frame, Duration timeout, const Match& match,
                                               bool again) {
    if (!isOpen) throw BusError::closed();
    if (logger) logger("-> " + hex(frame));
    const TimePoint begin = executor->now();
    write(begin, frame, again);
    Waiter attempt(*this, match, timeAfter(executor->now(), timeout));
    startTimer(attempt);
    // The event owns the task that waits for it. If that task shared the event, neither would ever end.
    if (OneShotEvent* const ended = attempt.ended.lock().get()) co_await ended->wait();
    if (attempt.closed) throw BusError::closed();
    if (attempt.reply)
        record->wasReply(addressOf(frame), executor->now() - begin);
    else
        record->timedOut(addressOf(frame));
    co_return std::move(attempt.reply);
}

void Bus::Core::write(TimePoint at, const Bytes& frame, bool again) {
    record->wasSent(at, frame, again);
    try {
        transport->write(frame);
    } catch (...) {
        record->wasWritten();
        throw;
    }
    record->wasWritten();
}

void Bus::Core::startTimer(Waiter& attempt) {
    auto ended = std::make_shared<OneShotEvent>();
    attempt.ended = ended;
    auto timer = currentTimer.lock();
    if (!timer || timer->due > attempt.deadline) {
        timer = std::make_shared<Timer>();
        currentTimer = timer;
        arm(timer, attempt.deadline);
    }
    timer->attemptEnded = std::move(ended);
}

void Bus::Core::arm(const std::shared_ptr<Timer>& timer, TimePoint due) {
    timer->due = due;
    executor->postAfter(due - executor->now(), [timer, weakCore = weak_from_this()] {
        if (const auto core = weakCore.lock()) core->expire(timer);
    });
}

void Bus::Core::expire(const std::shared_ptr<Timer>& timer) {
    if (!waiter || currentTimer.lock() != timer) return;
    if (waiter->deadline > executor->now()) return arm(timer, waiter->deadline);
    giveUpStalledFrame();
    if (waiter) resumeWaiter();
}

void Bus::Core::resumeWaiter() {
    if (const auto ended = std::exchange(waiter, nullptr)->ended.lock()) ended->set();
}

Task<void> Bus::Core::pump(std::weak_ptr<Core> weakCore, StreamReader<Bytes> chunks,
                           std::uint64_t generation) {
    for (;;) {
        const std::optional<Bytes> chunk = co_await chunks.next();
        if (!chunk) co_return;
        const auto core = weakCore.lock();
        if (!core || !core->isOpen || core->generation != generation) co_return;
        core->ingest(*chunk);
    }
}

void Bus::Core::ingest(const Bytes& chunk) {
    lastChunk = executor->now();
    const std::size_t held = parser.pending().size() + chunk.size();
    std::size_t used = 0;
    parser.feed(chunk, [this, &used](Frame& frame) { used += receive(frame); });
    record->droppedBytes(held - used - parser.pending().size());
}

// A damaged word count makes the parser wait for bytes that only later replies would bring. When no
// byte has come for a while, the frame is given up. What lies behind its head may be the reply itself.
void Bus::Core::giveUpStalledFrame() {
    const std::size_t held = parser.pending().size();
    if (held == 0 || executor->now() - lastChunk < longestPauseInFrame) return;
    std::size_t used = 0;
    parser.giveUp([this, &used](Frame& frame) { used += receive(frame); });
    record->droppedBytes(held - used);
}

// Returns the number of its bytes on the wire.
std::size_t Bus::Core::receive(Frame& frame) {
    if (logger) logger("<- " + hex(FrameCodec::encode(frame, false, {})));
    record->wasReceived(executor->now(), frame);
    const std::size_t bytes = FrameCodec::headerBytes + frame.payload.size() + FrameCodec::checksumBytes;
    if (waiter && waiter->match(frame)) {
        waiter->reply = std::move(frame);
        resumeWaiter();
    } else {
        record->wasDropped(frame.address);
    }
    return bytes;
}

std::stop_token Bus::Core::tokenForOpening() {
    const std::scoped_lock lock(mutex);
    return openings.get_token();
}

// Ends an `open` or `write` of the transport that holds the executor, and the openings that have been
// asked for and have not begun. Called from any thread, and returns at once. Only an abandoned bus
// stops the openings of the future as well.
void Bus::Core::stopTransport() {
    std::unique_lock lock(mutex);
    std::stop_source stopped = openings;
    if (!abandoned) openings = std::stop_source();
    lock.unlock();
    stopped.request_stop();
    transport->close();
}

void Bus::Core::closed(std::uint64_t endedGeneration, const std::exception_ptr& error) {
    if (!isOpen || endedGeneration != generation) return;
    isOpen = false;
    if (waiter) {
        waiter->closed = true;
        resumeWaiter();
    }
    if (closeHandler) closeHandler(error);
}

Bus::Bus(std::shared_ptr<Transport> transport, std::shared_ptr<Executor> executor)
    : Bus(std::move(transport), std::move(executor), std::make_shared<LineRecord>()) {}

Bus::Bus(std::shared_ptr<Transport> transport, std::shared_ptr<Executor> executor,
         std::shared_ptr<LineRecord> writable)
    : transport(std::move(transport))
    , executor(executor ? std::move(executor) : this->transport->queue())
    , record(writable)
    , core(std::make_shared<Core>(this->transport, this->executor, std::move(writable))) {}

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
