#include "app/model/appmodel.hpp"
#include "app/model/outcome.hpp"

#include "Wendril/text.hpp"

#include <algorithm>
#include <utility>

namespace Corvane {

using namespace Wendril;

namespace {

constexpr std::uint8_t firstAddress = 1;
constexpr std::uint8_t lastAddress = 16;
constexpr int mostSpeakers = lastAddress;

}  // namespace

Task<void> AppModel::discover(bool renumber) { return discover(weak_from_this(), renumber); }

std::shared_ptr<AppModel> AppModel::ifStill(const Weak& weak, std::uint64_t discovery) {
    auto self = weak.lock();
    return self && self->discoveries == discovery ? self : nullptr;
}

Task<void> AppModel::discover(Weak weak, bool renumber) {
    auto self = weak.lock();
    if (!self || !self->client) co_return;
    self->stopLoop();
    self->dropEdits();
    self->progress = std::nullopt;
    self->discovering = true;
    const std::uint64_t discovery = ++self->discoveries;
    self.reset();

    auto finding = findSpeakers(weak, discovery, renumber);
    const bool found = co_await std::move(finding);
    if (!found) co_return;
    auto reading = readSpeakers(weak, discovery);
    const bool read = co_await std::move(reading);
    self = ifStill(weak, discovery);
    if (!read || !self) co_return;
    self->endDiscovery();
    self->status = Status::online(self->bus->transport->name());
    self->startLoop();
}

// True with the speakers listed, but not yet read.
Task<bool> AppModel::findSpeakers(Weak weak, std::uint64_t discovery, bool renumber) {
    auto self = ifStill(weak, discovery);
    if (!self) co_return false;
    const K7QClient client = *self->client;
    self->status = Status::working("Procurando caixas…");
    self.reset();
    std::vector<DeviceInfo> found;
    if (!renumber) {
        auto scan = client.scan(firstAddress, lastAddress);
        found = co_await std::move(scan);
    }
    self = ifStill(weak, discovery);
    if (!self) co_return false;

    if (found.empty()) {
        self->status = Status::working("Endereçando as caixas…");
        self.reset();
        auto addressing = outcomeOf(client.assignAddresses(mostSpeakers));
        auto addressed = co_await std::move(addressing);
        self = ifStill(weak, discovery);
        if (!self) co_return false;
        if (addressed) found = *std::move(addressed.value);
    }
    if (found.empty()) {
        self->endDiscovery();
        self->status = Status::error("Nenhuma caixa respondeu. Confira o cabo no \"From PC\".");
        co_return false;
    }

    Speakers speakers;
    for (const DeviceInfo& info : found)
        speakers.push_back(std::make_shared<Speaker>(info));
    self->dropEdits();  // to speakers that are no longer listed
    self->speakers = std::move(speakers);
    if (!self->focus()) self->target = std::nullopt;
    co_return true;
}

// False when this discovery has been overruled. A speaker that does not answer to everything keeps
// its empty values, and the next one is read.
Task<bool> AppModel::readSpeakers(Weak weak, std::uint64_t discovery) {
    auto self = ifStill(weak, discovery);
    if (!self) co_return false;
    const K7QClient client = *self->client;
    const Speakers speakers = self->speakers.value();
    self.reset();
    for (std::size_t i = 0; i < speakers.size(); ++i) {
        const std::uint8_t address = speakers[i]->address;
        self = ifStill(weak, discovery);
        if (!self) co_return false;
        self->status = Status::working("Lendo a caixa " + twoDigits(address) + "…");
        self.reset();
        auto reading =
            outcomeOf(client.readAll(address, [weak, discovery, i, n = speakers.size()](double fraction) {
                if (const auto self = ifStill(weak, discovery))
                    self->progress = (static_cast<double>(i) + fraction) / static_cast<double>(n);
            }));
        auto values = co_await std::move(reading);
        self = ifStill(weak, discovery);
        if (!self) co_return false;
        if (values)
            speakers[i]->take(*std::move(values.value), {});
        else
            self->notice = "A caixa " + twoDigits(address) + " não respondeu a todas as leituras";
    }
    co_return true;
}

}  // namespace Corvane
