#pragma once

#include "Wendril/frame.hpp"
#include "Wendril/runtime/serialqueue.hpp"

#include <chrono>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>
#include <vector>

namespace Wendril {

/// Why a link could not be opened or written to. `what()` and `description()` are the same text,
/// in Portuguese, for the user.
class TransportError : public std::exception {
public:
    enum class Case { open, configure, write, notOpen };

    /// `target` is the path, or host, ":" and port.
    static TransportError open(const std::string& target, int error);
    static TransportError configure(const std::string& path, int error);
    static TransportError write(int error);
    static TransportError notOpen();

    Case kind() const { return errorCase; }
    int code() const { return errorNumber; }  // errno; 0 for notOpen
    const std::string& description() const { return *text; }
    const char* what() const noexcept override { return text->c_str(); }

private:
    TransportError(Case errorCase, int errorNumber, std::string text);

    Case errorCase;
    int errorNumber;
    std::shared_ptr<const std::string> text;  // shared, so that copying an exception cannot throw
};

/// Moves raw bytes between the computer and the first speaker of the chain. `open`, `write` and
/// `close` may be called from any thread; `close` also ends an `open` or `write` that blocks in
/// another. The callbacks run on `queue`, one at a time.
class Transport {
public:
    using OnData = std::function<void(ByteView data)>;

    /// Gets the error that ended the link; null when it was closed or ended cleanly. It may be called
    /// after `close`, and more than once.
    using OnClose = std::function<void(std::exception_ptr error)>;

    virtual ~Transport() = default;

    /// Short label of the link for the user.
    virtual std::string name() const = 0;

    /// Throws what kept the link from opening; the transport is closed then.
    virtual void open(OnData onData, OnClose onClose) = 0;

    /// `open`, for a transport whose opening may block: it ends with `notOpen` when `stop` is requested,
    /// also when that was before. So a request to stop is not lost where a `close` would be: just before
    /// the opening begins. By default the same as `open`.
    virtual void cancellableOpen(OnData onData, OnClose onClose, std::stop_token stop);

    /// Throws TransportError (`notOpen`, or `write`, which leaves the link open).
    virtual void write(ByteView data) = 0;

    virtual void close() = 0;

    /// Where the callbacks run.
    virtual std::shared_ptr<Executor> queue() const = 0;

protected:
    Transport() = default;
    Transport(const Transport&) = default;
    Transport& operator=(const Transport&) = default;
};

/// A serial line, 8 data bits, no parity, 1 stop bit, no flow control, held exclusively. A line
/// that ends by itself (adapter pulled) reports `TransportError::open` with the path; the end of
/// the file reports no error. Destroying an open transport closes it.
class SerialTransport final : public Transport {
public:
    SerialTransport(std::string path, int baudRate);
    ~SerialTransport() override;
    SerialTransport(const SerialTransport&) = delete;
    SerialTransport& operator=(const SerialTransport&) = delete;

    /// Paths of the serial ports in `directory`, in string order; none when it cannot be read.
    static std::vector<std::string> availablePorts(const std::string& directory = "/dev");

    std::string name() const override;  // last component of the path
    void open(OnData onData, OnClose onClose) override;

    /// Blocks while the output buffer is full.
    void write(ByteView data) override;
    void close() override;
    std::shared_ptr<Executor> queue() const override;

private:
    class Line;

    const std::string path;
    const int baudRate;
    const std::shared_ptr<SerialQueue> serialQueue;
    const std::shared_ptr<Line> line;
};

/// A TCP connection to the Wi-Fi bridge, without Nagle's delay. `onClose` comes once for every
/// `open` that succeeded. Destroying an open transport closes it.
class TCPTransport final : public Transport {
public:
    static constexpr Duration connectLimit = std::chrono::seconds(5);

    TCPTransport(std::string host, std::uint16_t port, Duration openLimit = connectLimit);
    ~TCPTransport() override;
    TCPTransport(const TCPTransport&) = delete;
    TCPTransport& operator=(const TCPTransport&) = delete;

    std::string name() const override;  // host:port

    /// Blocks its caller for `openLimit` at most, name resolution included; `close` from another thread
    /// ends it at once with `notOpen`. Refusals and resolver failures are std::system_error with
    /// the system's text; a time-out is `TransportError::open` with ETIMEDOUT.
    void open(OnData onData, OnClose onClose) override;
    void cancellableOpen(OnData onData, OnClose onClose, std::stop_token stop) override;

    /// Returns at once; what the connection does not take yet follows from the queue.
    void write(ByteView data) override;
    void close() override;
    std::shared_ptr<Executor> queue() const override;

private:
    class Link;

    const std::string host;
    const std::uint16_t port;
    const Duration openLimit;
    const std::shared_ptr<SerialQueue> serialQueue;
    const std::shared_ptr<Link> link;
};

/// The Portuguese text of any failure of the library, or the system's own text.
std::string describe(const std::exception_ptr& error);

}  // namespace Wendril
