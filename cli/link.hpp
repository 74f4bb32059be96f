#pragma once

#include "Wendril/bridgeaddress.hpp"
#include "Wendril/client.hpp"
#include "Wendril/runtime/wakeup.hpp"

#include <cstdint>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>

namespace Cli {

/// Where the speakers are: a serial port or a bridge.
struct Endpoint {
    std::string port;  // path; empty for a bridge
    Wendril::BridgeAddress bridge;
};

/// The process got SIGINT (the user pressed Ctrl-C) or SIGTERM.
struct Interrupted : std::runtime_error {
    Interrupted()
        : std::runtime_error("interrompido") {}
};

/// An open link to the speakers. Its tasks run on the transport's own queue: a request and its
/// reply change no thread.
class Link {
public:
    /// Opens; throws what keeps the link from opening. `verbose` logs every frame on standard error.
    Link(const Endpoint& endpoint, bool verbose);
    ~Link();
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    /// Runs a task to its end and returns or throws what it does. When the link has ended, throws
    /// the reason of that instead: the task itself only fails with "closed".
    template <class T>
    T run(Wendril::Task<T> task) {
        try {
            return Wendril::spawn(bus->executor, std::move(task)).get();
        } catch (const std::exception&) {
            throwIfLost();
            throw;
        }
    }

    Wendril::K7QClient client() const { return {bus, Wendril::K7Q::productID}; }

    /// Throws the reason when the link has ended. Needed after tasks that never fail.
    void throwIfLost();

private:
    // Why the link has ended; nothing is set while it is open.
    struct Loss {
        std::mutex mutex;
        bool interrupted = false;
        std::string text;
    };

    void closeOnInterruption();
    void stopWatching();

    const std::shared_ptr<Loss> loss;
    const std::shared_ptr<Wendril::Bus> bus;
    Wendril::Wakeup ended;
    std::thread watcher;
};

}  // namespace Cli
