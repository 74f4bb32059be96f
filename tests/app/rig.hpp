#pragma once

#include "app/model/appmodel.hpp"
#include "simulator/memorytransport.hpp"
#include "simulator/virtualtime.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <iterator>
#include <utility>

namespace Tests {

using namespace std::chrono_literals;
using namespace Corvane;
using namespace Wendril;

/// A frame that the host has sent.
struct Sent {
    TimePoint at;
    std::uint8_t fun;
    std::uint8_t address;
    std::uint8_t module;  // payload byte 1

    bool is(Fun kind) const { return fun == static_cast<std::uint8_t>(kind); }
};

/// The port of the rig. It opens once at a time, as a serial port does.
struct Port {
    std::vector<Sent> sent;
    std::function<bool(const Sent&)> swallow;  // frames for which it returns true get lost
    std::optional<TransportError> refusal;     // of the next openings
    int holders = 0;
};

/// A cable into the simulated line.
class Cable final : public Transport {
public:
    Cable(std::shared_ptr<Simulator::Line> line, std::shared_ptr<Port> port, std::string label)
        : line(line)
        , port(std::move(port))
        , label(std::move(label))
        , memory(line) {}
    ~Cable() override { release(); }
    Cable(const Cable&) = delete;
    Cable& operator=(const Cable&) = delete;

    std::string name() const override { return label; }
    std::shared_ptr<Executor> queue() const override { return line->executor; }
    void open(OnData onData, OnClose onClose) override {
        if (port->refusal) throw TransportError(*port->refusal);
        if (port->holders > 0) throw TransportError::open(label, EBUSY);
        ++port->holders;
        held = true;
        memory.open(std::move(onData), std::move(onClose));
    }
    void write(ByteView data) override {
        const std::uint8_t module = data.size() > 13 ? data[13] : std::uint8_t{0};
        port->sent.push_back({line->executor->now(), data[3], data[2], module});
        const Sent sent = port->sent.back();
        if (!port->swallow || !port->swallow(sent)) memory.write(data);
    }
    void close() override {
        memory.close();
        release();
    }
    void cut(const std::exception_ptr& error) {
        memory.cut(error);
        release();
    }

private:
    void release() {
        if (std::exchange(held, false)) --port->holders;
    }

    const std::shared_ptr<Simulator::Line> line;
    const std::shared_ptr<Port> port;
    const std::string label;
    Simulator::MemoryTransport memory;
    bool held = false;
};

inline Simulator::LineOptions chainOf(std::size_t boards) { return {.boards = boards, .turnaround = 2ms}; }

/// The model, its port and a simulated chain on one virtual clock.
struct Rig {
    explicit Rig(const Simulator::LineOptions& options = chainOf(1))
        : line(std::make_shared<Simulator::Line>(time.executor(), options)) {}

    std::shared_ptr<Transport> connectCable(const std::string& label) {
        auto made = std::make_shared<Cable>(line, port, label);
        cable = made;
        return made;
    }

    /// Runs until `done`, for an hour at most.
    bool until(const std::function<bool()>& done) {
        const TimePoint end = time.now() + 1h;
        time.runUntil([&] { return done() || time.now() >= end; });
        return done();
    }

    /// Runs the next `count` functions that are due.
    void steps(int count) {
        time.runUntil([&count] { return count-- == 0; });
    }

    /// Starts the operation and runs until it has ended.
    void run(Task<void> operation) { time.run(std::move(operation)); }

    /// Connects; the list of sent frames is empty then.
    void goOnline() {
        run(model->connect());
        ASSERT_EQ(model->status.value().state, Status::Case::online) << model->status.value().text;
        port->sent.clear();
    }

    std::vector<Sent> sentOf(Fun kind) const {
        std::vector<Sent> list;
        std::ranges::copy_if(port->sent, std::back_inserter(list),
                             [kind](const Sent& sent) { return sent.is(kind); });
        return list;
    }

    /// Modules written, in order.
    std::vector<int> written() const {
        std::vector<int> modules;
        for (const Sent& sent : sentOf(Fun::moduleSet))
            modules.push_back(sent.module);
        return modules;
    }

    const std::shared_ptr<Speaker>& speaker(std::size_t position) const {
        return model->speakers.value().at(position);
    }
    ModuleValue shown(std::size_t position, std::uint8_t module) const {
        return speaker(position)->values.value().at(module);
    }

    /// Modules of which the model and the board hold different values, for all speakers.
    std::vector<int> differing() const {
        std::vector<int> modules;
        for (std::size_t i = 0; i < model->speakers.value().size(); ++i)
            for (const auto& [module, value] : speaker(i)->values.value())
                if (value.encoded() != line->board(i).stored(module)) modules.push_back(module);
        return modules;
    }

    std::string notice() const { return model->notice.value().value_or(""); }

    Simulator::VirtualTime time;
    std::shared_ptr<Simulator::Line> line;
    std::shared_ptr<Port> port = std::make_shared<Port>();
    std::weak_ptr<Cable> cable;  // the latest one
    std::shared_ptr<AppModel> model = std::make_shared<AppModel>(Surroundings{
        .executor = time.executor(),
        .serialPorts = [] { return std::vector<std::string>{"/dev/ttyUSB0"}; },
        .extraPort = "",
        .serial = [this](const std::string& path) { return connectCable(path); },
        .bridge = [this](const std::string& host,
                         std::uint16_t number) { return connectCable(host + ":" + std::to_string(number)); },
    });
};

/// Every value that a field takes from now on.
template <class Value>
struct Sequence {
    explicit Sequence(Property<Value>& field)
        : watcher(watch([&field] { return field.value(); },
                        [this](const Value& value) { values.push_back(value); })) {
        values.clear();
    }

    std::vector<Value> values;
    std::shared_ptr<Watcher> watcher;
};

const std::vector<int> none;

inline ModuleValue gain(float db) { return {GainValue{db, false, true}}; }

}  // namespace Tests
