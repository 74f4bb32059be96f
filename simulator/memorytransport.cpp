#include "simulator/memorytransport.hpp"

#include <utility>

namespace Simulator {

MemoryTransport::MemoryTransport(std::shared_ptr<Line> line)
    : line(std::move(line)) {}

MemoryTransport::~MemoryTransport() { close(); }

void MemoryTransport::open(OnData onData, OnClose closed) {
    onClose = std::move(closed);
    line->connect(std::move(onData));
}

void MemoryTransport::write(Wendril::ByteView data) {
    if (!onClose) throw Wendril::TransportError::notOpen();
    line->receive(data);
}

void MemoryTransport::close() { cut(nullptr); }

void MemoryTransport::cut(const std::exception_ptr& error) {
    if (!onClose) return;
    line->disconnect();
    line->executor->post([closed = std::exchange(onClose, nullptr), error] { closed(error); });
}

}  // namespace Simulator
