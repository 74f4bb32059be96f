#include "simulator/soak/faultycable.hpp"

#include "Wendril/profile.hpp"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <utility>

namespace Soak {

using namespace Wendril;
using namespace std::chrono_literals;

namespace {

// The bytes of each field that the checksum does not cover.
struct Field {
    Fault fault;
    std::size_t first;
    std::size_t bytes;
};
constexpr Field headerFields[] = {
    {Fault::flippedHead, 0, 1},     {Fault::flippedProduct, 1, 1}, {Fault::flippedAddress, 2, 1},
    {Fault::flippedFunction, 3, 1}, {Fault::flippedGroup, 4, 2},   {Fault::flippedReserved, 6, 2},
};

Bytes encoded(const Frame& frame) { return FrameCodec::encode(frame, false, {}); }

// Nobody answers for requests before the first.
constexpr std::uint64_t nothing = 0;

}  // namespace

FaultyCable::FaultyCable(Workshop& workshop, std::shared_ptr<Simulator::Line> line, std::string label)
    : workshop(workshop)
    , line(std::move(line))
    , label(std::move(label)) {}

FaultyCable::~FaultyCable() { close(); }

bool FaultyCable::strikes(Fault fault) {
    const auto found = workshop.weather.find(fault);
    if (found == workshop.weather.end() || !workshop.chance.happens(found->second)) return false;
    workshop.ledger.count(fault);
    if (workshop.log) workshop.log("fault: " + std::string(faultNames[static_cast<std::size_t>(fault)]));
    return true;
}

void FaultyCable::open(OnData data, OnClose closed) {
    const bool isCut = strikes(Fault::cutWhileOpening);
    if (isCut && workshop.chance.happens(0.5)) throw TransportError::open(label, EIO);
    if (workshop.holders > 0) workshop.violated("the port is opened while it is open");
    ++workshop.holders;
    ++workshop.ledger.openings;
    ++opening;
    onData = std::move(data);
    onClose = std::move(closed);
    watch.reset();
    line->connect([this](ByteView bytes) { reply(bytes); });
    if (isCut) cut(true);
}

void FaultyCable::close() { cut(false); }

void FaultyCable::cut(bool withError) {
    if (!isOpen()) return;
    --workshop.holders;
    line->disconnect();
    watch.reset();
    held.clear();
    const auto error =
        withError ? std::make_exception_ptr(TransportError::open(label, EIO)) : std::exception_ptr();
    line->executor->post([closed = std::exchange(onClose, nullptr), error] { closed(error); });
}

std::uint8_t FaultyCable::lastWritten(std::uint8_t address) const {
    const auto found = written.find(address);
    return found == written.end() ? std::uint8_t{0} : found->second;
}

void FaultyCable::write(ByteView data) {
    if (!isOpen()) throw TransportError::notOpen();
    const auto reading = reader.feed(data);
    if (reading.requests.size() != 1 || !reading.faults.empty())
        return workshop.violated("the host has not sent one whole request");
    if (strikes(Fault::cutWhileWriting)) {
        cut(true);
        throw TransportError::write(EIO);
    }
    if (strikes(Fault::stalledAdapter)) {
        const auto end = workshop.time.now() + std::chrono::milliseconds(workshop.chance.between(10, 8000));
        while (isOpen() && workshop.time.now() < end)
            workshop.time.block(10ms);
        if (!isOpen()) throw TransportError::write(EIO);
    }
    begin(reading.requests.front(), data);
    send(reading.requests.front(), data);
}

// A resend has the bytes of a request that has not been answered.
void FaultyCable::begin(const Frame& request, ByteView data) {
    const bool isResend = watch.waiting() && std::ranges::equal(lastBytes, data);
    lastBytes.assign(data.begin(), data.end());
    writtenAt = workshop.time.now();
    ++workshop.ledger.requests;
    ++attempt;
    const auto judged = [this](const Frame& frame, bool isReply) {
        if (isReply) judge(frame, std::min(oldestHeld, attempt - 1));
    };
    if (watch.sent(request, writtenAt, writtenAt, judged))
        workshop.violated("a request while another one waits: " + Simulator::meaningOf(request, true));
    if (workshop.log) workshop.log((isResend ? "again: " : "host: ") + Simulator::meaningOf(request, true));
    if (isResend) return;
    firstAttempt = attempt;
    if (request.function() != Fun::moduleSet) return;
    ++workshop.ledger.writes;
    written[request.address] = u8(request.payload, 1);
}

void FaultyCable::send(const Frame& request, ByteView data) {
    if (strikes(Fault::echo)) deliver({{Bytes(data.begin(), data.end()), nothing}}, 0ms);
    if (strikes(Fault::cutWhileReading))
        line->executor->postAfter(1ms, [weak = weak_from_this(), now = opening] {
            if (const auto cable = weak.lock(); cable && cable->opening == now) cable->cut(true);
        });
    if (strikes(Fault::lostRequest)) return;
    const auto fun = request.function();
    const bool canRefuse = fun == Fun::moduleSet || fun == Fun::presetSave || fun == Fun::presetLoad;
    if (canRefuse && strikes(Fault::refusal)) return refuse(request);
    line->receive(data);
}

void FaultyCable::refuse(const Frame& request) {
    const Frame refusal(K7Q::productID, request.address, Fun::ack,
                        {Simulator::Board::refused, request.fun, 0, 0});
    deliver({{FrameCodec::encode(refusal, false, {}), attempt}}, 2ms);
}

void FaultyCable::reply(ByteView bytes) {
    ++workshop.ledger.replies;
    Bytes damaged(bytes.begin(), bytes.end());
    if (strikes(Fault::lostReply)) return;
    replace(damaged);
    if (strikes(Fault::doubledReply))
        deliver({{damaged, attempt}}, std::chrono::milliseconds(workshop.chance.between(1, 500)));
    flip(damaged);
    if (strikes(Fault::truncatedReply)) damaged.resize(1 + workshop.chance.below(damaged.size()));
    surround(damaged);
    held.push_back({std::move(damaged), attempt});
    if (strikes(Fault::mergedReplies)) return;
    Pieces pieces = std::exchange(held, {});
    Bytes& last = pieces.back().bytes;
    const Duration delay = delayOf(last.size());
    if (strikes(Fault::splitReply)) {
        const auto cut = last.begin() + static_cast<std::ptrdiff_t>(workshop.chance.below(last.size()));
        Bytes rest(cut, last.end());
        last.erase(cut, last.end());
        deliver({{std::move(rest), attempt}},
                delay + std::chrono::milliseconds(workshop.chance.between(1, 120)));
    }
    deliver(std::move(pieces), delay);
}

Duration FaultyCable::delayOf(std::size_t bytes) {
    if (strikes(Fault::lateReply)) return std::chrono::milliseconds(workshop.chance.between(50, 3000));
    // 2400 bit/s, as behind a congested bridge.
    if (strikes(Fault::slowLine)) return bytes * 10 * 1000ms / 2400;
    if (workshop.isPaced) return workshop.turnaround + bytes * 10 * 1000ms / K7Q::baudRate;
    return workshop.turnaround;
}

// A whole frame with a valid checksum, but not the one that was asked for.
void FaultyCable::replace(Bytes& bytes) {
    FrameParser parser;
    const auto frames = parser.feed(bytes);
    if (frames.size() != 1) return;
    Frame other = frames.front();
    if (strikes(Fault::wrongAddress))
        other.address = static_cast<std::uint8_t>(workshop.chance.between(1, 16));
    if (other.payload.size() > 1 && other.function() == Fun::moduleGet && strikes(Fault::wrongModule))
        other.payload[1] = static_cast<std::uint8_t>(workshop.chance.between(1, K7Q::meterIndex));
    bytes = encoded(other);
}

// One bit at most of what the checksum covers: two flips may leave the sum as it was.
void FaultyCable::flip(Bytes& bytes) {
    const auto flipIn = [&](Fault fault, std::size_t first, std::size_t count) {
        if (count == 0 || first + count > bytes.size() || !strikes(fault)) return false;
        bytes[first + workshop.chance.below(count)] ^=
            static_cast<std::uint8_t>(1U << workshop.chance.below(8));
        return true;
    };
    for (const Field& field : headerFields)
        flipIn(field.fault, field.first, field.bytes);
    constexpr std::size_t around = FrameCodec::headerBytes + FrameCodec::checksumBytes;
    if (bytes.size() < around) return;
    if (flipIn(Fault::flippedCount, 8, 4)) return;
    if (flipIn(Fault::flippedPayload, FrameCodec::headerBytes, bytes.size() - around)) return;
    flipIn(Fault::flippedChecksum, bytes.size() - FrameCodec::checksumBytes, FrameCodec::checksumBytes);
}

void FaultyCable::surround(Bytes& bytes) {
    Bytes before;
    if (strikes(Fault::noise))
        for (int count = workshop.chance.between(1, 40); count > 0; --count)
            before.push_back(static_cast<std::uint8_t>(workshop.chance.below(256)));
    if (strikes(Fault::falseHead)) append(before, Bytes{FrameCodec::head, 9, 1, 5, 0, 0, 0, 0, 64, 0, 0, 0});
    if (strikes(Fault::flood)) append(before, otherFrames());
    bytes.insert(bytes.begin(), before.begin(), before.end());
}

// Frames that nobody has asked for.
Bytes FaultyCable::otherFrames() {
    Bytes flood;
    for (int count = workshop.chance.between(10, 400); count > 0; --count) {
        const auto address = static_cast<std::uint8_t>(workshop.chance.between(17, 254));
        append(flood, encoded({K7Q::productID, address, Fun::linkStatus, Bytes(8)}));
    }
    return flood;
}

void FaultyCable::deliver(Pieces pieces, Duration after) {
    // Never at the moment at which a time-out ends.
    const std::chrono::nanoseconds apart(workshop.chance.between(1, 999'999));
    line->executor->postAfter(after + apart,
                              [weak = weak_from_this(), now = opening, pieces = std::move(pieces)] {
                                  const auto cable = weak.lock();
                                  if (cable && cable->isOpen() && cable->opening == now)
                                      cable->arrive(pieces);
                              });
}

void FaultyCable::arrive(const Pieces& pieces) {
    Bytes together;
    for (const Piece& piece : pieces) {
        append(together, piece.bytes);
        oldestHeld = std::min(oldestHeld, piece.answers);
        watch.received(piece.bytes, workshop.time.now(), [this](const Frame& frame, bool isReply) {
            if (isReply) judge(frame, oldestHeld);
        });
        if (!watch.isMidFrame()) oldestHeld = UINT64_MAX;
    }
    onData(together);
}

// The host takes `frame` for the reply to the request that waits. Where it was the reply to an earlier
// one, or an echo, the host cannot know.
void FaultyCable::judge(const Frame& frame, std::uint64_t answers) {
    const Frame request = watch.waiting().value();
    if (request.function() == Fun::moduleSet && u8(frame.payload, 0) == 0) ++workshop.ledger.confirmed;
    if (answers < firstAttempt) return markAmbiguous(request);
    if (request.function() != Fun::moduleSet || u8(frame.payload, 0) != 0) return;
    const Key key{request.address, u8(request.payload, 1)};
    workshop.ledger.toldKeys.erase(key);
    workshop.ledger.ambiguousKeys.erase(key);
}

void FaultyCable::markAmbiguous(const Frame& request) {
    if (workshop.log) workshop.log("ambiguous: " + Simulator::meaningOf(request, true));
    switch (*request.function()) {
    case Fun::moduleSet:
    case Fun::moduleGet:
        workshop.ledger.ambiguousKeys.insert({request.address, u8(request.payload, 1)});
        break;
    case Fun::presetLoad:
        workshop.ledger.ambiguousSpeakers.insert(request.address);
        break;
    case Fun::devInfo:
    case Fun::linkStatus:
    case Fun::netStart:
    case Fun::netAddressSet:
        workshop.ledger.ambiguousAddresses = true;
        break;
    default:
        break;
    }
}

}  // namespace Soak
