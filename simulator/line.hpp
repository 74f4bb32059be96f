#pragma once

#include "simulator/board.hpp"
#include "simulator/hostwatch.hpp"
#include "simulator/requests.hpp"

#include "Wendril/frame.hpp"
#include "Wendril/runtime/executor.hpp"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace Simulator {

/// How a chain behaves. Chances are from 0 to 1, per reply; the same seed draws the same faults.
struct LineOptions {
    std::size_t boards = 3;
    bool addressed = true;           // addresses 1, 2, 3 … in chain order; else none yet
    bool still = false;              // the meters keep the levels of second 0
    bool pace = false;               // bytes take the time they take at 115200 8N1
    Wendril::Duration turnaround{};  // from the end of a request to the start of its reply
    std::uint64_t seed = 1;
    double lose = 0;     // the reply never comes
    double corrupt = 0;  // one bit of it is wrong
    double late = 0;     // it comes `delay` too late
    Wendril::Duration delay{};
    double duplicate = 0;  // it comes twice
    double noise = 0;      // random bytes come before it
    double refuse = 0;     // a write or preset command is refused and not carried out

    /// Real time only. On a loaded machine the line reads a request late. It looks at the clock this
    /// often; a request came after the last look, and the host's time-out counts from there.
    Wendril::Duration look{};

    /// The operating system's timers fire late. The line wakes this long before a reply is due and
    /// polls the clock until then. 0 in virtual time.
    Wendril::Duration wakeAhead{};
};

/// Boards in chain order on a half-duplex line. It carries frames both ways, with the delays and the
/// faults of its options. It records every protocol fault of the host: bytes outside frames,
/// malformed requests, a request sent before the last one was answered or had timed out.
/// Use it on its executor only.
class Line : public std::enable_shared_from_this<Line> {
public:
    Line(std::shared_ptr<Wendril::Executor> executor, const LineOptions& options);

    /// Sends the bytes for the host to `toHost` from now on. Replies to an earlier host that are
    /// still on their way are dropped.
    using ToHost = std::function<void(Wendril::ByteView bytes)>;
    void connect(ToHost toHost);
    void disconnect();

    void receive(Wendril::ByteView fromHost);

    Board& board(std::size_t position) { return boards.at(position); }

    /// The board at that position, from 0, answers nothing from now on.
    void mute(std::size_t position) { muted.insert(position); }
    void unmute(std::size_t position) { muted.erase(position); }

    struct Summary {
        std::map<std::string, std::size_t> requests;  // by what they ask for
        std::size_t replies = 0;
        std::vector<std::string> faults;  // of the host
    };
    const Summary& summary() const { return record; }

    /// Logs every frame as "host  -> " or "board <- " with its bytes in hex and its meaning, and
    /// every fault.
    void setLog(std::function<void(const std::string& line)> log) { this->log = std::move(log); }

    const std::shared_ptr<Wendril::Executor> executor;

private:
    double meterSeconds() const;
    bool happens(double chance);
    void fault(const std::string& what);
    void judge(const Wendril::Frame& request);
    void handle(const Wendril::Frame& request);
    Wendril::Bytes replyTo(const Wendril::Frame& request);
    std::vector<Board*> addressees(const Wendril::Frame& request);
    void sendReply(const Wendril::Bytes& reply);
    Wendril::Bytes noiseBytes();
    void deliverAt(Wendril::TimePoint due, Wendril::Bytes bytes);
    void deliverWhenDue(Wendril::TimePoint due, std::uint64_t host, Wendril::Bytes bytes);
    void deliver(const Wendril::Bytes& bytes);
    void lookAtClock();

    const LineOptions options;
    const Wendril::TimePoint start;
    std::mt19937_64 random;
    std::vector<Board> boards;
    std::set<std::size_t> muted;
    RequestReader reader;
    Wendril::TimePoint lastByte;
    Wendril::TimePoint busyUntil;  // end of the last byte on a paced line
    HostWatch watch;
    Wendril::TimePoint lastLook;
    std::uint64_t generation = 0;  // of the host; a reply only reaches the host that asked
    ToHost toHost;
    Summary record;
    std::function<void(const std::string&)> log;
};

}  // namespace Simulator
