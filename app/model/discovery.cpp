#include "app/model/appmodel.hpp"

#include "app/model/words.hpp"

#include "Wendril/text.hpp"

#include <chrono>
#include <memory>
#include <utility>

namespace Corvane {

using namespace Wendril;

namespace {

constexpr std::uint8_t firstAddress = 1;
constexpr std::uint8_t lastAddress = 16;
constexpr int mostSpeakers = lastAddress;
constexpr auto incompleteReading = "não respondeu a todas as leituras";

}  // namespace

Task<void> AppModel::discover(bool renumber) {
    return operation([this, renumber] { return discoverSteps(renumber); });
}

Task<void> AppModel::discoverSteps(bool renumber) {
    if (!link.client) co_return;
    const K7QClient client = *link.client;
    const Generation discovery = link.discoveries.next();  // ends the live loop too
    progress = std::nullopt;
    if (activity.value() && !leaving) {
        warn("A procura interrompeu: " + *activity.value());
        activity = std::nullopt;
    }

    status = Status::working("Procurando caixas…");
    // An overruled addressing goes on to its end. Two at a time would give an address twice.
    while (!addressing.expired())
        co_await during(discovery, sleepFor(std::chrono::milliseconds(10)));
    std::vector<DeviceInfo> found;
    if (!renumber) {
        auto scanned = co_await during(discovery, client.scan(firstAddress, lastAddress));
        found = *std::move(scanned.value);
    }
    if (found.empty()) {
        status = Status::working("Endereçando as caixas…");
        const auto running = std::make_shared<char>();
        addressing = running;
        auto addressed = co_await during(discovery, client.assignVerified(mostSpeakers));
        if (addressed) found = std::move(addressed.value->found);
        if (addressed && !addressed.value->isCertain)
            warn("O endereçamento não pôde ser confirmado. Confira os cabos e procure as caixas de novo.");
    }
    if (found.empty()) {
        fail("Nenhuma caixa respondeu. Confira o cabo no \"From PC\".");
        co_return;
    }

    takeOver(found);
    co_await readSpeakers(client, discovery);
    progress = std::nullopt;
    status = Status::online(client.bus->transport->name());
    start(operation([this, client, discovery] { return live(client, discovery); }));
    start(operation([this, client, discovery] { return watchLine(client, discovery); }));
}

void AppModel::takeOver(const std::vector<DeviceInfo>& found) {
    Speakers listed;
    for (const DeviceInfo& info : found)
        listed.push_back(std::make_shared<Speaker>(info));
    dropEdits();  // they are for the speakers listed before, as are the steps of the history
    history.clear();
    std::vector<std::uint8_t> addresses;
    for (const auto& speaker : listed)
        addresses.push_back(speaker->address);
    speakers = std::move(listed);
    events.add("Encontradas: " + wordFor(addresses));
    if (found.size() < foundBefore)
        warn("Antes respondiam " + std::to_string(foundBefore) + " caixas, agora " +
             std::to_string(found.size()));
    foundBefore = found.size();
    if (!focus()) target = std::nullopt;
}

// A speaker that does not answer every request keeps its empty values, and the next one is read.
Task<void> AppModel::readSpeakers(K7QClient client, Generation discovery) {
    const Speakers all = speakers.value();
    for (std::size_t i = 0; i < all.size(); ++i) {
        const std::uint8_t address = all[i]->address;
        status = Status::working("Lendo a caixa " + twoDigits(address) + "…");
        const auto show = [this, discovery, i, n = all.size()](double fraction) {
            if (!discovery.isOver()) progress = (static_cast<double>(i) + fraction) / static_cast<double>(n);
        };
        const std::uint64_t reading = beginReading(*all[i]);
        auto values = co_await during(discovery, client.readAll(address, show));
        if (values)
            all[i]->take(*std::move(values.value), reading);
        else
            warn(address, incompleteReading);
    }
}

Task<void> AppModel::readAgain() {
    return operation([this] { return readAgainSteps(); });
}

Task<void> AppModel::readAgainSteps() {
    if (!link.client || activity.value() || !status.value().isOnline()) co_return;
    const K7QClient client = *link.client;
    const Generation generation = link.discoveries.latest();
    const Speakers asked = targeted();
    std::vector<std::uint8_t> done;
    for (const auto& speaker : asked) {
        activity = "Lendo a caixa " + twoDigits(speaker->address) + "…";
        const std::uint64_t reading = beginReading(*speaker);
        auto values = co_await during(generation, client.readAll(speaker->address, nullptr));
        if (values) {
            speaker->take(*std::move(values.value), reading);
            done.push_back(speaker->address);
        } else {
            warn(speaker->address, incompleteReading);
        }
    }
    activity = std::nullopt;
    tell((done.size() == 1 ? "Lida: " : "Lidas: ") + wordFor(done));
}

}  // namespace Corvane
