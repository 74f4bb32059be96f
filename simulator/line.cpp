#include "simulator/line.hpp"

#include "Wendril/profile.hpp"

#include <algorithm>
#include <utility>

namespace Simulator {

using namespace Wendril;

namespace {

constexpr int bitsPerByte = 10;  // start bit, 8 data bits, stop bit
constexpr Duration byteTime{1'000'000'000LL * bitsPerByte / K7Q::baudRate};

// A host writes a frame in one piece. A gap of this length inside a frame means that the host has
// broken it off.
constexpr auto longestGap = std::chrono::milliseconds(100);

bool canRefuse(const Frame& request) {
    switch (request.function().value_or(Fun::ack)) {
    case Fun::moduleSet:
    case Fun::presetSave:
    case Fun::presetLoad:
    case Fun::presetDelete:
        return true;
    default:
        return false;
    }
}

std::string kindOf(const Frame& request) {
    if (request.function() == Fun::moduleGet)
        return u8(request.payload, 1) >= K7Q::meterIndex ? "meter readings" : "module reads";
    switch (request.function().value_or(Fun::groupSet)) {
    case Fun::linkStatus:
        return "pings";
    case Fun::devInfo:
        return "identity requests";
    case Fun::moduleSet:
        return "module writes";
    case Fun::netStart:
    case Fun::netAddressSet:
        return "addressing commands";
    default:
        return "preset commands";
    }
}

}  // namespace

Line::Line(std::shared_ptr<Executor> executor, const LineOptions& options)
    : executor(std::move(executor))
    , options(options)
    , start(this->executor->now())
    , random(options.seed)
    , lastByte(start)
    , busyUntil(start) {
    for (std::size_t i = 1; i <= options.boards; ++i)
        boards.emplace_back(static_cast<int>(i), options.addressed ? static_cast<std::uint8_t>(i) : 0,
                            options.seed);
}

void Line::connect(ToHost to) {
    disconnect();
    toHost = std::move(to);
    lookAtClock();
}

void Line::lookAtClock() {
    if (!toHost || options.look == Duration::zero()) return;
    lastLook = executor->now();
    executor->postAfter(options.look, [weakLine = weak_from_this(), host = generation] {
        const auto line = weakLine.lock();
        if (line && line->generation == host) line->lookAtClock();
    });
}

void Line::disconnect() {
    ++generation;
    toHost = nullptr;
    watch.reset();
    reader.reset();
}

void Line::receive(ByteView fromHost) {
    const TimePoint now = executor->now();
    if (reader.midFrame() && now - lastByte > longestGap) {
        fault("a frame broken off");
        reader.reset();
    }
    lastByte = now;
    busyUntil = std::max(busyUntil, now) + byteTime * static_cast<int>(fromHost.size());
    RequestReader::Reading reading = reader.feed(fromHost);
    for (const std::string& what : reading.faults)
        fault(what);
    for (const Frame& request : reading.requests) {
        judge(request);
        handle(request);
    }
}

double Line::meterSeconds() const {
    return options.still ? 0 : std::chrono::duration<double>(executor->now() - start).count();
}

bool Line::happens(double chance) {
    return chance > 0 && std::generate_canonical<double, 53>(random) < chance;
}

void Line::fault(const std::string& what) {
    record.faults.push_back(what);
    if (log) log("FAULT of the host: " + what);
}

void Line::judge(const Frame& request) {
    if (log) {
        const bool stray = request.function() == Fun::netStart;
        const Bytes bytes = FrameCodec::encode(request, false, stray ? Bytes{0} : Bytes{});
        log("host  -> " + hex(bytes) + "  " + meaningOf(request, true));
    }
    ++record.requests[kindOf(request)];
    const TimePoint now = executor->now();
    const TimePoint earliest = options.look > Duration::zero() ? lastLook : now;
    if (const auto before = watch.sent(request, earliest, now))
        fault("a request before the last one was answered or given up: " + meaningOf(request, true) +
              " after " + meaningOf(*before, true));
    if (const auto what = faultOf(request)) fault(*what + ": " + meaningOf(request, true));
}

void Line::handle(const Frame& request) {
    if (faultOf(request)) return;
    const Bytes reply = replyTo(request);
    if (reply.empty() || happens(options.lose)) return;
    sendReply(reply);
}

// Boards that share an address answer at the same time. Where one of them drives the line low, it is
// low, so that only what they have in common arrives whole.
Bytes Line::replyTo(const Frame& request) {
    if (request.function() == Fun::netStart)
        for (Board& board : boards)
            board.beginAddressing();
    Bytes together;
    for (Board* const board : addressees(request)) {
        const auto reply = canRefuse(request) && happens(options.refuse)
                               ? board->acknowledge(request, Board::refused)
                               : board->answer(request, meterSeconds());
        if (!reply) continue;
        Bytes bytes = FrameCodec::encode(*reply, false, {});
        for (std::size_t i = 0; i < std::min(bytes.size(), together.size()); ++i)
            bytes[i] &= together[i];
        together = std::move(bytes);
    }
    return together;
}

// A broadcast passes along the chain to the first board that waits for an address; that one answers.
std::vector<Board*> Line::addressees(const Frame& request) {
    std::vector<Board*> meantBoards;
    for (std::size_t i = 0; i < boards.size(); ++i) {
        if (muted.contains(i)) continue;
        const bool meant =
            isBroadcast(request) ? boards[i].awaitsAddress() : boards[i].address() == request.address;
        if (!meant || (!isBroadcast(request) && request.address == 0)) continue;
        meantBoards.push_back(&boards[i]);
        if (isBroadcast(request)) break;
    }
    return meantBoards;
}

void Line::sendReply(const Bytes& reply) {
    Bytes bytes = reply;
    const std::size_t frameBytes = bytes.size();
    if (happens(options.corrupt))
        bytes[random() % frameBytes] ^= static_cast<std::uint8_t>(1U << random() % 8);
    if (happens(options.noise)) {
        const Bytes noise = noiseBytes();
        bytes.insert(bytes.begin(), noise.begin(), noise.end());
    }
    TimePoint due = executor->now() + options.turnaround;
    if (options.pace)
        due = busyUntil = busyUntil + options.turnaround + byteTime * static_cast<int>(bytes.size());
    if (happens(options.late)) due += options.delay;
    if (happens(options.duplicate)) deliverAt(due + byteTime * static_cast<int>(frameBytes), reply);
    deliverAt(due, std::move(bytes));
}

Bytes Line::noiseBytes() {
    constexpr std::size_t longest = 12;
    Bytes noise(1 + random() % longest);
    for (std::uint8_t& byte : noise)
        byte = static_cast<std::uint8_t>(random());
    return noise;
}

void Line::deliverAt(TimePoint due, Bytes bytes) {
    const Duration wait = due - executor->now() - options.wakeAhead;
    if (wait <= Duration::zero()) return deliverWhenDue(due, generation, std::move(bytes));
    executor->postAfter(
        wait, [weakLine = weak_from_this(), due, host = generation, bytes = std::move(bytes)]() mutable {
            if (const auto line = weakLine.lock()) line->deliverWhenDue(due, host, std::move(bytes));
        });
}

void Line::deliverWhenDue(TimePoint due, std::uint64_t host, Bytes bytes) {
    if (generation != host) return;
    if (executor->now() >= due) return deliver(bytes);
    executor->post([weakLine = weak_from_this(), due, host, bytes = std::move(bytes)]() mutable {
        if (const auto line = weakLine.lock()) line->deliverWhenDue(due, host, std::move(bytes));
    });
}

void Line::deliver(const Bytes& bytes) {
    if (!toHost) return;
    ++record.replies;
    std::size_t intact = 0;
    watch.received(bytes, executor->now(), [this, &intact](const Frame& frame, bool) {
        ++intact;
        if (log)
            log("board <- " + hex(FrameCodec::encode(frame, false, {})) + "  " + meaningOf(frame, false));
    });
    if (log && intact == 0) log("board <- " + hex(bytes) + "  (broken)");
    toHost(bytes);
}

}  // namespace Simulator
