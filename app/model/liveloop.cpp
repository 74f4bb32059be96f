#include "app/model/appmodel.hpp"
#include "app/model/outcome.hpp"

#include "Wendril/text.hpp"

#include <chrono>
#include <utility>

namespace Corvane {

using namespace Wendril;

namespace {

constexpr auto meterPause = std::chrono::milliseconds(60);
constexpr int missesBeforeNotice = 10;

}  // namespace

void AppModel::startLoop() { loop = spawn(surroundings.executor, live(weak_from_this())); }

void AppModel::stopLoop() {
    if (loop) loop->requestStop();
}

std::optional<AppModel::Edit> AppModel::nextEdit() {
    if (order.empty()) return std::nullopt;
    const WriteKey key = order.front();
    order.pop_front();
    auto entry = pending.extract(key);
    if (entry.empty()) return std::nullopt;
    return Edit{key, entry.mapped()};
}

// Edits go first, one after another without a pause; when none is left, the meters are read.
Task<void> AppModel::live(Weak weak) {
    auto asking = currentStopToken();
    const std::stop_token stop = co_await std::move(asking);
    int misses = 0;
    for (;;) {
        auto self = weak.lock();
        if (stop.stop_requested() || !self || !self->client) co_return;
        const K7QClient client = *self->client;

        if (const auto edit = self->nextEdit()) {
            self.reset();
            auto writing =
                outcomeOf(client.write(edit->key.address, K7Q::module(edit->key.index).value(), edit->value));
            const auto written = co_await std::move(writing);
            self = weak.lock();
            if (!written && self)
                self->notice = "A caixa " + twoDigits(edit->key.address) + " não confirmou o ajuste";
            continue;
        }

        if (const auto speaker = self->focus()) {
            self.reset();
            auto reading = outcomeOf(client.meters(speaker->address));
            auto levels = co_await std::move(reading);
            self = weak.lock();
            if (stop.stop_requested() || !self) co_return;  // whoever ended the link shows silence
            if (levels) {
                misses = 0;
                self->meters = *std::move(levels.value);
            } else if (++misses == missesBeforeNotice) {
                self->notice = "A caixa " + twoDigits(speaker->address) + " parou de responder";
            }
        }
        self.reset();
        auto pause = sleepFor(meterPause);
        const bool slept = co_await std::move(pause);
        if (!slept) co_return;
    }
}

}  // namespace Corvane
