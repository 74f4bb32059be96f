#include "app/model/appmodel.hpp"

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
            // The notice is given also when the discovery is over by then: the edit is lost.
            const auto written = co_await during(
                life.latest(),
                client.write(edit->key.address, K7Q::module(edit->key.index).value(), edit->value));
            if (!written) warn(edit->key.address, "não confirmou o ajuste");
            continue;
        }
        if (const auto speaker = focus()) {
            auto levels = co_await during(discovery, client.meters(speaker->address));
            if (levels) {
                misses = 0;
                meters = *std::move(levels.value);
            } else if (++misses == missesBeforeNotice) {
                warn(speaker->address, "parou de responder");
            }
        }
        co_await during(discovery, sleepFor(meterPause));
    }
}

}  // namespace Corvane
