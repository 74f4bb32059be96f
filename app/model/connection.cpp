#include "app/model/appmodel.hpp"

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

std::shared_ptr<Transport> AppModel::chosenTransport() const {
    const std::string choice = portChoice.value();
    if (choice == bridgeChoice) return surroundings.bridge(espHost.value(), bridgePort);
    return surroundings.serial(choice);
}

Task<void> AppModel::connect() {
    return operation([this] { return connectSteps(); });
}

Task<void> AppModel::disconnect() {
    return operation([this] { return disconnectSteps(); });
}

Task<void> AppModel::connectSteps() {
    co_await disconnectSteps();
    auto transport = chosenTransport();
    status = Status::working("Conectando a " + transport->name() + "…");
    const auto opened = co_await link.open(std::move(transport));
    if (opened) {
        events.add("Conectado a " + link.client->bus->transport->name());
        co_await discoverSteps(false);
    } else {
        fail(opened.failure);
    }
}

void AppModel::fail(const std::string& reason) {
    events.add(reason);
    status = Status::error(reason);
}

Task<void> AppModel::disconnectSteps() {
    progress = std::nullopt;
    activity = std::nullopt;
    if (link.client) events.add("Desconectado");
    co_await link.close();
    history.clear();
    speakers = Speakers{};
    meters = std::vector<float>(K7Q::meterChannels.size(), silence);
    status = Status::offline();
}

void AppModel::linkLost(const std::string& reason) {
    progress = std::nullopt;
    activity = std::nullopt;
    fail(reason);
}

}  // namespace Corvane
