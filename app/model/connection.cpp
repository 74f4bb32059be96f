#include "app/model/appmodel.hpp"

#include "Wendril/bridgeaddress.hpp"
#include "Wendril/serialports.hpp"
#include "Wendril/text.hpp"

#include <algorithm>
#include <chrono>
#include <set>
#include <stdexcept>
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
    ports = list;
    if (!stillThere && !chosen.empty()) pulled = {stableNames[chosen], first};
    stableNames.clear();
    for (const std::string& port : list)
        stableNames[port] = surroundings.stablePortName ? surroundings.stablePortName(port) : port;
    // Plugged in again, maybe as another path, and the user has not chosen another since.
    const auto again = std::ranges::find_if(list, [&](const std::string& port) {
        return pulled && stableNames[port] == pulled->name && pulled->instead == chosen;
    });
    if (again != list.end()) {
        pulled = std::nullopt;
        portChoice = *again;
        return;
    }
    if (chosen.empty() || !stillThere) portChoice = first;
}

namespace {

std::string heldBy(const std::string& port) {
    const std::string holder = SerialPorts::inUseBy(port);
    return holder.empty() ? "" : " (" + holder + ")";
}

}  // namespace

std::shared_ptr<Transport> AppModel::chosenTransport() const {
    const std::string choice = portChoice.value();
    if (choice == bridgeChoice) {
        const BridgeAddress bridge = BridgeAddress::parse(espHost.value());
        return surroundings.bridge(bridge.host, bridge.port);
    }
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
    std::shared_ptr<Transport> transport;
    try {
        transport = chosenTransport();
    } catch (const std::invalid_argument& error) {
        co_return fail("Ponte Wi-Fi: " + std::string(error.what()));
    }
    status = Status::working("Conectando a " + transport->name() + "…");
    const auto opened = co_await link.open(std::move(transport));
    if (opened) {
        foundBefore = 0;
        unsent.clear();
        events.add("Conectado a " + link.client->bus->transport->name());
        co_await discoverSteps(false);
    } else {
        fail(opened.failure + heldBy(portChoice.value()));
    }
}

void AppModel::fail(const std::string& reason) {
    events.add(reason);
    status = Status::error(reason);
}

Task<void> AppModel::leave() {
    return operation([this] { return leaveSteps(); });
}

Task<void> AppModel::leaveSteps() {
    constexpr auto longestWait = std::chrono::seconds(3);
    if (link.client && !leaving && isSending()) {
        leaving = true;
        activity = "Enviando os últimos ajustes…";
        co_await editsSent(longestWait);
    }
    dropEdits();
    co_await disconnectSteps();
}

// Says so, for the speakers do not hold what the window shows.
void AppModel::dropEdits() {
    auto keys = edits.keys();
    if (const auto onTheLine = std::exchange(writing, std::nullopt)) keys.push_front(*onTheLine);
    if (!keys.empty()) {
        std::set<std::string> addresses;
        for (const WriteKey& key : keys)
            addresses.insert(twoDigits(key.address));
        std::string list;
        for (const std::string& address : addresses)
            list += (list.empty() ? "" : ", ") + address;
        const std::string text =
            (keys.size() == 1 ? "1 ajuste não foi enviado"
                              : std::to_string(keys.size()) + " ajustes não foram enviados") +
            std::string(" (") + (addresses.size() == 1 ? "caixa " : "caixas ") + list + ")";
        warn(text);
        unsent += (unsent.empty() ? "" : "; ") + text;
    }
    edits.clear();
}

Task<void> AppModel::disconnectSteps() {
    progress = std::nullopt;
    activity = std::nullopt;
    leaving = false;
    if (link.client) events.add("Desconectado");
    co_await link.close();
    history.clear();
    speakers = Speakers{};
    takeLevels(std::vector<float>(K7Q::meterChannels.size(), silence));
    status = Status::offline();
}

void AppModel::linkLost(const std::string& reason) {
    progress = std::nullopt;
    activity = std::nullopt;
    leaving = false;
    dropEdits();
    fail(reason);
}

}  // namespace Corvane
