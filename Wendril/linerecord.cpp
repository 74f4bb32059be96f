#include "Wendril/linerecord.hpp"

#include <algorithm>

namespace Wendril {

LineRecord::Summary LineRecord::summary() const {
    const std::scoped_lock lock(mutex);
    Summary summary;
    for (const auto& [number, address] : addresses) {
        Counts counts = address.counts;
        const auto kept = static_cast<std::ptrdiff_t>(std::min(address.replies, keptReplyTimes));
        auto times = address.replyTimes;
        if (kept > 0) {
            const auto middle = times.begin() + kept / 2;
            std::nth_element(times.begin(), middle, times.begin() + kept);
            counts.median = *middle;
        }
        summary.addresses.emplace(number, counts);
    }
    summary.droppedBytes = bytesDropped;
    const std::size_t kept = std::min(entries, keptFrames);
    for (std::size_t i = entries - kept; i < entries; ++i)
        summary.frames.push_back(ring[i % keptFrames]);
    return summary;
}

std::uint64_t LineRecord::resent(std::uint8_t address) const {
    const std::scoped_lock lock(mutex);
    const auto found = addresses.find(address);
    return found == addresses.end() ? 0 : found->second.counts.resent;
}

// The entries are used again, so that a payload finds the room of an earlier one.
LineRecord::Entry& LineRecord::nextEntry() {
    if (ring.empty()) ring.resize(keptFrames);
    return ring[entries++ % keptFrames];
}

std::optional<TimePoint> LineRecord::writingSince() const {
    const std::scoped_lock lock(mutex);
    return writing;
}

void LineRecord::wasWritten() {
    const std::scoped_lock lock(mutex);
    writing.reset();
}

void LineRecord::wasSent(TimePoint at, ByteView bytes, bool again) {
    const std::scoped_lock lock(mutex);
    writing = at;
    Entry& entry = nextEntry();
    entry.at = at;
    entry.sent = true;
    Frame& frame = entry.frame;
    frame.product = u8(bytes, 1);
    frame.address = u8(bytes, 2);
    frame.fun = u8(bytes, 3);
    const std::size_t payload = std::size_t{4} * u32(bytes, FrameCodec::headerBytes - 4);
    const ByteView rest = bytes.subspan(std::min(FrameCodec::headerBytes, bytes.size()));
    const ByteView kept = rest.first(std::min(payload, rest.size()));
    frame.payload.assign(kept.begin(), kept.end());
    Counts& counts = addresses[frame.address].counts;
    ++counts.sent;
    if (again) ++counts.resent;
}

void LineRecord::timedOut(std::uint8_t address) {
    const std::scoped_lock lock(mutex);
    ++addresses[address].counts.timedOut;
}

void LineRecord::wasReceived(TimePoint at, const Frame& frame) {
    const std::scoped_lock lock(mutex);
    Entry& entry = nextEntry();
    entry.at = at;
    entry.sent = false;
    entry.frame = frame;
}

void LineRecord::wasReply(std::uint8_t address, Duration after) {
    const std::scoped_lock lock(mutex);
    Address& asked = addresses[address];
    asked.counts.longest = std::max(asked.counts.longest, after);
    asked.replyTimes.at(asked.replies++ % keptReplyTimes) = after;
}

void LineRecord::wasDropped(std::uint8_t address) {
    const std::scoped_lock lock(mutex);
    ++addresses[address].counts.dropped;
}

void LineRecord::droppedBytes(std::size_t count) {
    if (count == 0) return;
    const std::scoped_lock lock(mutex);
    bytesDropped += count;
}

}  // namespace Wendril
