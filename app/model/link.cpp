#include "app/model/link.hpp"

#include <utility>

namespace Corvane {

using namespace Wendril;

Link::Link(std::shared_ptr<Executor> executor, Lost lost)
    : executor(std::move(executor))
    , lost(std::move(lost)) {}

// Requests that wait for a reply share the bus; abandoning it ends them.
Link::~Link() {
    if (bus) bus->abandon();
}

// A serial port opens only once, so an overruled `close` leaves the bus to the later one, which
// waits for it again before a new bus opens.
Task<void> Link::close() {
    endTasks();
    const Generation closing = generations.next();
    if (!bus) co_return;
    co_await during(closing, bus->close());
    bus.reset();
}

Task<Outcome<void>> Link::open(std::shared_ptr<Transport> transport) {
    const Generation opening = generations.next();
    bus = std::make_shared<Bus>(std::move(transport));
    record = bus->record;
    co_await during(opening, bus->onClose(closeHandler(opening)));
    auto opened = co_await during(opening, bus->open());
    if (opened)
        client.emplace(bus, K7Q::productID);
    else
        bus.reset();
    co_return opened;
}

// The bus calls the handler on its own executor. A link that ends right after its opening reports
// the opening first: both reports go through `executor`, in order.
Bus::CloseHandler Link::closeHandler(Generation opening) {
    return [this, executor = executor, opening](const std::exception_ptr& error) {
        std::string reason = error ? describe(error) : "A conexão com as caixas caiu";
        executor->post([this, opening, reason = std::move(reason)] {
            if (opening.isOver()) return;
            endTasks();
            generations.end();
            bus.reset();
            lost(reason);
        });
    };
}

void Link::endTasks() {
    client.reset();
    discoveries.end();
    listings.end();
}

}  // namespace Corvane
