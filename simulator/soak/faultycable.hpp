#pragma once

#include "simulator/hostwatch.hpp"
#include "simulator/line.hpp"
#include "simulator/requests.hpp"
#include "simulator/soak/chance.hpp"
#include "simulator/soak/ledger.hpp"
#include "simulator/virtualtime.hpp"

#include "Wendril/transport.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace Soak {

/// What the cables of one run share.
struct Workshop {
    Simulator::VirtualTime& time;
    Chance& chance;
    Ledger& ledger;
    Weather weather;                 // now
    Wendril::Duration turnaround{};  // of the boards
    bool isPaced = false;            // bytes take the time of the line
    std::function<void(const std::string&)> log;
    std::function<void(const std::string&)> violated;
    int holders = 0;  // open cables: a port opens once at a time
};

/// A cable into a simulated line. It damages what passes, and knows what the host must make of it.
class FaultyCable final : public Wendril::Transport, public std::enable_shared_from_this<FaultyCable> {
public:
    FaultyCable(Workshop& workshop, std::shared_ptr<Simulator::Line> line, std::string label);
    ~FaultyCable() override;
    FaultyCable(const FaultyCable&) = delete;
    FaultyCable& operator=(const FaultyCable&) = delete;

    std::string name() const override { return label; }
    std::shared_ptr<Wendril::Executor> queue() const override { return line->executor; }
    void open(OnData onData, OnClose onClose) override;
    void write(Wendril::ByteView data) override;
    void close() override;

    bool isOpen() const { return static_cast<bool>(onClose); }

    /// The end of the link, with an error or cleanly.
    void cut(bool withError);

    /// The module of the latest write to that address; 0 before the first.
    std::uint8_t lastWritten(std::uint8_t address) const;

    Wendril::TimePoint lastWrite() const { return writtenAt; }

private:
    // Bytes for the host, and the attempt that they answer.
    struct Piece {
        Wendril::Bytes bytes;
        std::uint64_t answers;
    };
    using Pieces = std::vector<Piece>;

    bool strikes(Fault fault);
    void begin(const Wendril::Frame& request, Wendril::ByteView data);
    void send(const Wendril::Frame& request, Wendril::ByteView data);
    void reply(Wendril::ByteView bytes);
    void flip(Wendril::Bytes& bytes);
    void replace(Wendril::Bytes& bytes);
    void surround(Wendril::Bytes& bytes);
    Wendril::Bytes otherFrames();
    void refuse(const Wendril::Frame& request);
    void deliver(Pieces pieces, Wendril::Duration after);
    void arrive(const Pieces& pieces);
    void judge(const Wendril::Frame& frame, std::uint64_t answers);
    void markAmbiguous(const Wendril::Frame& request);
    Wendril::Duration delayOf(std::size_t bytes);

    Workshop& workshop;
    const std::shared_ptr<Simulator::Line> line;
    const std::string label;
    OnData onData;
    OnClose onClose;  // empty while closed
    std::uint64_t opening = 0;

    Simulator::RequestReader reader;
    Simulator::HostWatch watch;
    std::uint64_t attempt = 0;              // counts the requests, resends included
    std::uint64_t firstAttempt = 0;         // of the request that is on the line now
    std::uint64_t oldestHeld = UINT64_MAX;  // attempt that the oldest byte of an unfinished frame answers
    Wendril::Bytes lastBytes;
    std::map<std::uint8_t, std::uint8_t> written;  // module, by address
    Wendril::TimePoint writtenAt;
    Pieces held;  // replies that come together with the next one
};

}  // namespace Soak
