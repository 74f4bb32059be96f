#pragma once

#include "cli/failure.hpp"

#include "Wendril/bridgeaddress.hpp"
#include "Wendril/client.hpp"
#include "Wendril/runtime/wakeup.hpp"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace Cli {

/// Where the speakers are: a serial port, a bridge or a simulated chain in this process.
struct Endpoint {
    std::string port;  // path, or the name of an entry of /dev or /dev/serial/by-id
    Wendril::BridgeAddress bridge;
    std::size_t demoSpeakers = 0;

    bool isNamed() const { return !port.empty() || !bridge.host.empty() || demoSpeakers > 0; }

    /// As messages name it.
    std::string name() const;
};

/// An open link to the speakers. Its tasks run on the transport's own queue: a request and its
/// reply change no thread.
class Link {
public:
    /// Opens; throws a Failure when it cannot. `verbose` logs every frame on standard error.
    Link(const Endpoint& endpoint, bool verbose);
    ~Link();
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    /// Runs a task to its end. Throws what it does, an error of the bus as a Failure that names the
    /// speaker (`address` 0: all) and the link. When the link has ended, throws the reason of that
    /// instead: the task itself only fails with "closed".
    template <class T>
    T run(Wendril::Task<T> task, std::uint8_t address = 0) {
        try {
            return Wendril::spawn(bus->executor, std::move(task)).get();
        } catch (const Wendril::BusError& error) {
            throwIfLost();
            throw failureOf(error, address);
        } catch (const std::exception&) {
            throwIfLost();
            throw;
        }
    }

    Wendril::K7QClient client() const { return {bus, Wendril::K7Q::productID}; }

    /// Throws the reason when the link has ended. Needed after tasks that never fail.
    void throwIfLost();

    /// What the line has done so far: for that speaker, and bytes of all that were no frames.
    struct Counts {
        std::uint64_t timedOut;
        std::uint64_t resent;
        std::uint64_t droppedBytes;
    };
    Counts counts(std::uint8_t address) const;

    const std::string name;

private:
    // Why the link has ended; nothing is set while it is open.
    struct Loss {
        std::mutex mutex;
        int signal = 0;
        std::string text;
    };

    Failure failureOf(const Wendril::BusError& error, std::uint8_t address) const;
    void open();
    void closeOnInterruption();
    void stopWatching();

    const std::shared_ptr<Loss> loss;
    const std::shared_ptr<Wendril::Bus> bus;
    Wendril::Wakeup ended;
    std::thread watcher;
};

}  // namespace Cli
