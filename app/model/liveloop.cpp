#include "app/model/appmodel.hpp"

#include "Wendril/text.hpp"

#include <chrono>
#include <utility>

namespace Corvane {

using namespace Wendril;

namespace {

constexpr auto meterPause = std::chrono::milliseconds(60);
constexpr int missesBeforeNotice = 10;

}  // namespace

// Edits go first, one after another without a pause. When none waits, the meters are read.
Task<void> AppModel::live(K7QClient client, Generation discovery) {
    int misses = 0;
    while (!discovery.isOver()) {
        if (const auto edit = edits.take()) {
            // The notice is given also when the discovery is over by then: the edit is lost. What a
            // link that has ended leaves unsent is told when it ends.
            writing = edit->key;
            const auto written = co_await during(
                life.latest(),
                client.write(edit->key.address, K7Q::module(edit->key.index).value(), edit->value));
            writing.reset();
            if (written || !link.client) continue;
            warn(edit->key.address, "não confirmou o ajuste");
            // The window closes before anyone reads the notice.
            if (leaving) unsent += (unsent.empty() ? "" : "; ") + notice.value().value();
            continue;
        }
        if (const auto speaker = focus()) {
            auto levels = co_await during(discovery, client.meters(speaker->address));
            if (levels) {
                misses = 0;
                takeLevels(*std::move(levels.value));
            } else if (++misses == missesBeforeNotice) {
                warn(speaker->address, "parou de responder");
            }
        }
        if (edits.isEmpty()) co_await heal(client, discovery);
        co_await during(discovery, sleepFor(meterPause));
    }
}

// A speaker that was not read completely is completed one module at a time, so that edits and meters
// hardly wait. One that does not answer is left alone for a while, and comes after those that do: several
// of them would otherwise take all the time.
Task<void> AppModel::heal(K7QClient client, Generation discovery) {
    constexpr auto pauseAfterFailure = std::chrono::seconds(5);
    std::shared_ptr<Speaker> next;
    for (const auto& speaker : speakers.value())
        if (speaker->firstMissing() && (!next || speaker->healAfter < next->healAfter)) next = speaker;
    if (!next || surroundings.executor->now() < next->healAfter) co_return;
    const ModuleRef missing = next->firstMissing().value();
    const auto value = co_await during(discovery, client.read(next->address, missing));
    if (!value)
        next->healAfter = surroundings.executor->now() + pauseAfterFailure;
    else if (next->fill(missing.index, *value.value))
        events.add("A caixa " + twoDigits(next->address) + " foi lida por completo");
}

// A jammed adapter blocks the thread that writes, so no time-out of the bus comes.
Task<void> AppModel::watchLine(K7QClient client, Generation discovery) {
    constexpr auto look = std::chrono::seconds(1);
    constexpr auto tooLong = std::chrono::seconds(3);
    bool wasStalled = false;
    while (!discovery.isOver()) {
        co_await during(discovery, sleepFor(look));
        const auto since = client.bus->record->writingSince();
        const bool isStalled = since && client.bus->executor->now() - *since >= tooLong;
        if (isStalled && !wasStalled) warn("O adaptador não aceita dados. Confira o cabo USB.");
        wasStalled = isStalled;
    }
}

}  // namespace Corvane
