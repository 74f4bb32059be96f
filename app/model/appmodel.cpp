#include "app/model/appmodel.hpp"

#include <algorithm>
#include <utility>

namespace Corvane {

using namespace Wendril;

AppModel::AppModel(Surroundings surroundings)
    : surroundings(std::move(surroundings)) {}

std::shared_ptr<AppModel> AppModel::create(Surroundings surroundings) {
    std::shared_ptr<AppModel> model(new AppModel(std::move(surroundings)));
    model->refreshPorts();
    return model;
}

// Requests of the tasks hold the bus until they end; nothing is left to wait for them.
AppModel::~AppModel() {
    stopLoop();
    if (bus) bus->abandon();
}

void AppModel::start(Task<void> operation) { spawn(surroundings.executor, std::move(operation)); }

std::shared_ptr<Speaker> AppModel::focus() const {
    const Speakers& all = speakers.value();
    const auto wanted = target.value();
    const auto found = std::ranges::find_if(
        all, [&wanted](const auto& speaker) { return !wanted || speaker->address == *wanted; });
    return found == all.end() ? nullptr : *found;
}

std::vector<std::string_view> AppModel::outputs() const {
    if (const auto chosen = output.value()) return {K7Q::outputs.at(static_cast<std::size_t>(*chosen))};
    return {K7Q::outputs.begin(), K7Q::outputs.end()};
}

Speakers AppModel::targeted() const {
    Speakers chosen;
    const auto wanted = target.value();
    std::ranges::copy_if(speakers.value(), std::back_inserter(chosen),
                         [&wanted](const auto& speaker) { return !wanted || speaker->address == *wanted; });
    return chosen;
}

float AppModel::meter(std::string_view channel) const {
    const auto* const found = std::ranges::find(K7Q::meterChannels, channel);
    const auto position = static_cast<std::size_t>(found - K7Q::meterChannels.begin());
    const std::vector<float>& levels = meters.value();
    return position < levels.size() ? levels[position] : silence;
}

}  // namespace Corvane
