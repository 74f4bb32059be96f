#pragma once

#include "simulator/line.hpp"

#include "Wendril/transport.hpp"

#include <memory>
#include <string>

namespace Simulator {

/// A transport that hands bytes to a simulated line by function calls, on the line's executor, in
/// virtual or real time.
class MemoryTransport final : public Wendril::Transport {
public:
    explicit MemoryTransport(std::shared_ptr<Line> line);
    ~MemoryTransport() override;
    MemoryTransport(const MemoryTransport&) = delete;
    MemoryTransport& operator=(const MemoryTransport&) = delete;

    std::string name() const override { return "simulador"; }
    void open(OnData onData, OnClose onClose) override;
    void write(Wendril::ByteView data) override;
    void close() override;
    std::shared_ptr<Wendril::Executor> queue() const override { return line->executor; }

    /// The cable is cut: the link ends with `error`, or cleanly without one.
    void cut(const std::exception_ptr& error);

private:
    const std::shared_ptr<Line> line;
    OnClose onClose;  // empty while closed
};

}  // namespace Simulator
