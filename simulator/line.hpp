#pragma once

#include "simulator/board.hpp"
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
    bool pace = false;               // bytes take the time they take at 115200 8N1
    Wendril::Duration turnaround{};  // from the end of a request to the start of its reply
    std::uint64_t seed = 1;
    double lose = 0;     // the reply never comes
    double corrupt = 0;  // one bit of it is wrong
    double late = 0;     // it comes `delay` too late
    Wendril::Duration delay{};
    double duplicate = 0;           // it comes twice
    double noise = 0;               // random bytes come before it
    double refuse = 0;              // a write or preset command is refused and not carried out
    double hostJitter = 0;          // part of a time-out that the host may send too early; its
                                    // clock and ours only agree in virtual time
    Wendril::Duration wakeAhead{};  // a real timer fires late: the line wakes so long before a
                                    // reply is due and watches the clock for the rest
};

/// Boards in chain order on a half-duplex line. It carries frames both ways, lets time pass and
/// things go wrong as asked, and records every protocol fault of the host: bytes outside frames,
/// malformed requests, a request sent while the last one could still be answered.
/// Confined to its executor.
class Line : public std::enable_shared_from_this<Line> {
public:
    Line(std::shared_ptr<Wendril::Executor> executor, const LineOptions& options);

    /// Where the bytes for the host go. A new host starts with a silent line.
    using ToHost = std::function<void(Wendril::ByteView bytes)>;
    void connect(ToHost toHost);
    void disconnect();

    void receive(Wendril::ByteView fromHost);

    Board& board(std::size_t position) { return boards.at(position); }

    /// From now on the board at that position, from 0, is dead.
    void mute(std::size_t position) { muted.insert(position); }

    struct Summary {
        std::map<std::string, std::size_t> requests;  // by what they ask for
        std::size_t replies = 0;
        std::vector<std::string> faults;  // of the host
    };
    const Summary& summary() const { return record; }

    /// Receives every frame both ways, "host  -> " or "board <- " with hex and meaning, and faults.
    void setLog(std::function<void(const std::string& line)> log) { this->log = std::move(log); }

    const std::shared_ptr<Wendril::Executor> executor;

private:
    struct Outstanding {
        Wendril::Frame request;
        Wendril::TimePoint until;  // the host gives up
    };

    double seconds() const;
    bool happens(double chance);
    void fault(const std::string& what);
    void judge(const Wendril::Frame& request);
    void handle(const Wendril::Frame& request);
    std::optional<Wendril::Frame> replyTo(const Wendril::Frame& request);
    Board* addressee(const Wendril::Frame& request);
    void sendReply(const Wendril::Frame& reply);
    Wendril::Bytes noiseBytes();
    void deliverAt(Wendril::TimePoint due, Wendril::Bytes bytes);
    void deliverWhenDue(Wendril::TimePoint due, std::uint64_t to, Wendril::Bytes bytes);
    void deliver(const Wendril::Bytes& bytes);

    const LineOptions options;
    const Wendril::TimePoint start;
    std::mt19937_64 random;
    std::vector<Board> boards;
    std::set<std::size_t> muted;
    RequestReader reader;
    Wendril::TimePoint lastByte;
    Wendril::TimePoint busyUntil;  // end of the last byte on a paced line
    std::optional<Outstanding> outstanding;
    Wendril::FrameParser hostParser;  // sees what the host sees
    std::uint64_t session = 0;        // deliveries to an earlier host are dropped
    ToHost toHost;
    Summary record;
    std::function<void(const std::string&)> log;
};

}  // namespace Simulator
