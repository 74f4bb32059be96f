#pragma once

#include "Wendril/frame.hpp"
#include "Wendril/runtime/executor.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <vector>

namespace Wendril {

/// What a bus has sent and received: counts for each address, and the latest frames. Written by the
/// bus, read from any thread.
class LineRecord {
public:
    static constexpr std::size_t keptFrames = 200;
    static constexpr std::size_t keptReplyTimes = 128;  // of each address, for the median

    struct Counts {
        std::uint64_t sent = 0;      // attempts, resends included
        std::uint64_t resent = 0;    // attempts after the first of a request
        std::uint64_t timedOut = 0;  // attempts without a reply
        std::uint64_t dropped = 0;   // valid frames from this address that no request waited for
        Duration longest{};          // reply time
        Duration median{};           // of the latest reply times; 0 without any
    };

    struct Entry {
        TimePoint at;  // on the clock of the bus's executor
        bool sent = false;
        Frame frame;
    };

    struct Summary {
        std::map<std::uint8_t, Counts> addresses;  // 255: requests to all speakers
        std::uint64_t droppedBytes = 0;            // noise and damaged frames
        std::vector<Entry> frames;                 // oldest first
    };

    Summary summary() const;

    /// Attempts to that address after the first of a request.
    std::uint64_t resent(std::uint8_t address) const;

    /// When the bus began to write what the transport has not taken yet; absent otherwise.
    std::optional<TimePoint> writingSince() const;

    /// An attempt with these bytes is being written, until `wasWritten`.
    void wasSent(TimePoint at, ByteView bytes, bool again);
    void wasWritten();
    void timedOut(std::uint8_t address);
    void wasReceived(TimePoint at, const Frame& frame);
    void wasReply(std::uint8_t address, Duration after);
    void wasDropped(std::uint8_t address);
    void droppedBytes(std::size_t count);

private:
    struct Address {
        Counts counts;
        std::array<Duration, keptReplyTimes> replyTimes{};
        std::size_t replies = 0;
    };

    Entry& nextEntry();

    mutable std::mutex mutex;  // guards the rest
    std::map<std::uint8_t, Address> addresses;
    std::uint64_t bytesDropped = 0;
    std::optional<TimePoint> writing;
    std::vector<Entry> ring;
    std::size_t entries = 0;  // written so far
};

}  // namespace Wendril
