#include "app/model/appmodel.hpp"
#include "app/model/outcome.hpp"

#include <algorithm>
#include <utility>

namespace Corvane {

using namespace Wendril;

void AppModel::refreshPorts() {
    std::vector<std::string> list = surroundings.serialPorts();
    const std::string& extra = surroundings.extraPort;
    if (!extra.empty() && std::ranges::find(list, extra) == list.end()) list.insert(list.begin(), extra);
    const std::string chosen = portChoice.value();
    const bool stillThere = chosen == bridgeChoice || std::ranges::find(list, chosen) != list.end();
    const std::string first = list.empty() ? std::string(bridgeChoice) : list.front();
    ports = std::move(list);
    if (chosen.empty() || !stillThere) portChoice = first;
}

Task<void> AppModel::connect() { return connect(weak_from_this()); }

Task<void> AppModel::disconnect() { return disconnect(weak_from_this()); }

Task<void> AppModel::disconnect(Weak weak) {
    auto self = weak.lock();
    if (!self) co_return;
    auto leaving = leave(weak, ++self->attempts);
    self.reset();
    co_await std::move(leaving);
}

std::shared_ptr<Transport> AppModel::chosenTransport() const {
    const std::string choice = portChoice.value();
    if (choice == bridgeChoice) return surroundings.bridge(espHost.value(), bridgePort);
    return surroundings.serial(choice);
}

// Closes the link and shows nothing of it any more. False when another attempt has overruled this
// one meanwhile; that one has waited for the same bus to close, for a port opens only once.
Task<bool> AppModel::leave(Weak weak, std::uint64_t attempt) {
    auto self = weak.lock();
    if (!self) co_return false;
    self->stopLoop();
    self->loop.reset();
    self->endDiscovery();
    self->client.reset();
    if (const auto closing = self->bus) {
        self.reset();
        auto closed = closing->close();
        co_await std::move(closed);
        self = weak.lock();
    }
    if (!self || self->attempts != attempt) co_return false;
    self->bus.reset();
    self->speakers = Speakers{};
    self->meters = std::vector<float>(K7Q::meterChannels.size(), silence);
    self->status = Status::offline();
    co_return true;
}

// While the bus opens, the model alone owns it: whoever takes over or ends the model ends the
// opening too.
Task<void> AppModel::connect(Weak weak) {
    auto self = weak.lock();
    if (!self) co_return;
    const std::uint64_t attempt = ++self->attempts;
    self.reset();
    auto leaving = leave(weak, attempt);
    const bool left = co_await std::move(leaving);
    self = weak.lock();
    if (!left || !self) co_return;

    self->bus = std::make_shared<Bus>(self->chosenTransport());
    self->status = Status::working("Conectando a " + self->bus->transport->name() + "…");
    auto watching = self->bus->onClose(self->closeHandler(attempt));
    auto open = self->bus->open();
    self.reset();
    co_await std::move(watching);
    auto opening = outcomeOf(std::move(open));
    const auto opened = co_await std::move(opening);

    self = weak.lock();
    if (!self || self->attempts != attempt) co_return;
    if (!opened) {
        self->bus.reset();
        self->status = Status::error(opened.failure);
        co_return;
    }
    self->client.emplace(self->bus, K7Q::productID);
    self.reset();
    auto discovery = discover(weak, false);
    co_await std::move(discovery);
}

// The bus calls it on its own executor; a report of its end that comes before the opening has been
// taken note of waits behind it on ours.
Bus::CloseHandler AppModel::closeHandler(std::uint64_t attempt) {
    return [weak = weak_from_this(), executor = surroundings.executor,
            attempt](const std::exception_ptr& error) {
        std::string reason = error ? describe(error) : "A conexão com as caixas caiu";
        executor->post([weak, attempt, reason = std::move(reason)] {
            if (const auto self = weak.lock()) self->linkLost(attempt, reason);
        });
    };
}

void AppModel::linkLost(std::uint64_t attempt, const std::string& reason) {
    if (attempts != attempt || !client) return;
    stopLoop();
    endDiscovery();
    client.reset();
    bus.reset();
    status = Status::error(reason);
}

void AppModel::endDiscovery() {
    ++discoveries;
    progress = std::nullopt;
    discovering = false;
}

}  // namespace Corvane
