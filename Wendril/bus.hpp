#pragma once

#include "Wendril/frame.hpp"
#include "Wendril/linerecord.hpp"
#include "Wendril/runtime/task.hpp"
#include "Wendril/transport.hpp"

#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <string>

namespace Wendril {

/// How a request ended without a usable reply. Equal by case and code.
class BusError : public std::exception {
public:
    enum class Case { timeout, rejected, closed };

    static BusError timeout(std::uint8_t fun);
    static BusError rejected(std::uint8_t fun);
    static BusError closed();

    Case kind() const { return errorCase; }
    std::uint8_t fun() const { return code; }  // 0 for closed
    const std::string& description() const { return *text; }
    const char* what() const noexcept override { return text->c_str(); }

    friend bool operator==(const BusError& a, const BusError& b) {
        return a.errorCase == b.errorCase && a.code == b.code;
    }

private:
    BusError(Case errorCase, std::uint8_t code, std::string text);

    Case errorCase;
    std::uint8_t code;
    std::shared_ptr<const std::string> text;  // shared, so that copying an exception cannot throw
};

/// One request at a time on a half-duplex line: sends, waits for the reply that the caller
/// recognises, resends after a time-out. Requests get the line in the order in which they ask for it.
///
/// All state lives on `executor`; the operations may be started on any executor. Dropping the bus
/// closes it. A request ends with its reply, its time-out or the closing of the bus: stopping the task
/// that made it does not end it sooner.
class Bus {
public:
    /// When no byte has come for so long by the end of an attempt, an incomplete frame is given up.
    static constexpr Duration longestPauseInFrame = std::chrono::milliseconds(50);

    using Logger = std::function<void(std::string line)>;
    using CloseHandler = std::function<void(std::exception_ptr error)>;
    using Match = std::function<bool(const Frame& frame)>;

    /// A closed bus. By default it works on the transport's own queue, so that a reply reaches it
    /// with no change of thread.
    explicit Bus(std::shared_ptr<Transport> transport, std::shared_ptr<Executor> executor = nullptr);
    ~Bus();
    Bus(const Bus&) = delete;
    Bus& operator=(const Bus&) = delete;

    const std::shared_ptr<Transport> transport;
    const std::shared_ptr<Executor> executor;

    /// What has been sent and received since the bus was made. It may outlive the bus.
    const std::shared_ptr<const LineRecord> record;

    /// Receives "-> " or "<- " and the hex dump of every attempt sent and every valid frame
    /// received, on the bus's executor. An empty one stops the log.
    Task<void> setLogger(Logger logger);

    /// Called once per open period, on the bus's executor, when it ends: with null after `close` or
    /// a clean end of the link, else with the transport's error. Replaces any earlier handler.
    Task<void> onClose(CloseHandler handler);

    /// Throws what the transport's `open` throws; the bus stays closed then. A `close` that starts
    /// after it also ends it, however far it has got.
    Task<void> open();

    /// Ends an `open` or `write` of the transport that blocks. The waiting request fails with `closed`
    /// at once, those behind it as they get the line.
    Task<void> close();

    /// Closes the bus for good, as dropping it does: from any thread, without waiting, without a call of
    /// the close handler. For an owner whose requests share the bus and would keep it open.
    void abandon();

    /// Sends `frame` (encoded) up to `retries` + 1 times, waiting `timeout` for each, and returns
    /// the first received frame that `match` accepts; `match` runs on the bus's executor. Throws
    /// BusError `timeout` or `closed`, or the transport's write error (no resend).
    Task<Frame> request(Bytes frame, Duration timeout, int retries, Match match);

private:
    class Core;

    Bus(std::shared_ptr<Transport> transport, std::shared_ptr<Executor> executor,
        std::shared_ptr<LineRecord> writable);

    const std::shared_ptr<Core> core;
};

}  // namespace Wendril
