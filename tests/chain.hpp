#pragma once

#include "Wendril/client.hpp"
#include "simulator/memorytransport.hpp"
#include "simulator/virtualtime.hpp"

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace Tests {

using namespace std::chrono_literals;

/// Speakers, line, bus and client on one virtual clock, the bus open. Bus and line have executors
/// of their own, so that every hand-over between them happens.
struct Chain {
    explicit Chain(const Simulator::LineOptions& options = {})
        : line(std::make_shared<Simulator::Line>(time.executor(), options))
        , transport(std::make_shared<Simulator::MemoryTransport>(line))
        , bus(std::make_shared<Wendril::Bus>(transport, time.executor()))
        , client(bus, Wendril::K7Q::productID) {
        time.run(bus->setLogger([this](std::string entry) { log.push_back(std::move(entry)); }));
        time.run(bus->open());
    }

    template <class T>
    T run(Wendril::Task<T> task) {
        return time.run(std::move(task));
    }

    const std::vector<std::string>& hostFaults() const { return line->summary().faults; }

    /// Frames sent by the host.
    std::size_t sent() const {
        std::size_t count = 0;
        for (const std::string& entry : log)
            count += entry.starts_with("-> ") ? 1 : 0;
        return count;
    }

    Simulator::VirtualTime time;
    std::vector<std::string> log;
    std::shared_ptr<Simulator::Line> line;
    std::shared_ptr<Simulator::MemoryTransport> transport;
    std::shared_ptr<Wendril::Bus> bus;
    Wendril::K7QClient client;
};

/// What a task fails with, in words; "" when it succeeds.
template <class Run>
std::string failureOf(Run run) {
    try {
        run();
        return "";
    } catch (const std::exception& error) {
        return error.what();
    }
}

}  // namespace Tests
