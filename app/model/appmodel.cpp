#include "app/model/appmodel.hpp"

#include "app/model/words.hpp"

#include "Wendril/text.hpp"

#include <algorithm>
#include <utility>

namespace Corvane {

using namespace Wendril;

AppModel::AppModel(Surroundings surroundings)
    : surroundings(std::move(surroundings))
    , link(this->surroundings.executor, [this](const std::string& reason) { linkLost(reason); }) {
    refreshPorts();
}

void AppModel::start(Task<void> operation) { spawn(surroundings.executor, std::move(operation)); }

Task<void> AppModel::operation(Steps steps) const { return untilOverruled(life.latest(), std::move(steps)); }

std::shared_ptr<Speaker> AppModel::focus() const {
    const Speakers& all = speakers.value();
    const auto found = std::ranges::find_if(all, [this](const auto& each) { return isTargeted(*each); });
    return found == all.end() ? nullptr : *found;
}

std::vector<std::string_view> AppModel::outputs() const {
    if (const auto chosen = output.value()) return {K7Q::outputs.at(static_cast<std::size_t>(*chosen))};
    return {K7Q::outputs.begin(), K7Q::outputs.end()};
}

bool AppModel::isTargeted(const Speaker& speaker) const {
    const auto wanted = target.value();
    return !wanted || speaker.address == *wanted;
}

Speakers AppModel::targeted() const {
    Speakers chosen;
    std::ranges::copy_if(speakers.value(), std::back_inserter(chosen),
                         [this](const auto& each) { return isTargeted(*each); });
    return chosen;
}

float AppModel::meter(std::string_view channel) const {
    const auto* const found = std::ranges::find(K7Q::meterChannels, channel);
    const auto position = static_cast<std::size_t>(found - K7Q::meterChannels.begin());
    const std::vector<float>& levels = meters.value();
    return position < levels.size() ? levels[position] : silence;
}

void AppModel::showLevels(bool seen) {
    levelsSeen = seen;
    takeLevels(std::move(latestLevels));
}

void AppModel::takeLevels(std::vector<float> levels) {
    latestLevels = std::move(levels);
    if (levelsSeen) meters = latestLevels;
}

void AppModel::warn(const std::string& text) {
    events.add(text);
    notice = text;
}

void AppModel::warn(std::uint8_t address, const std::string& complaint) {
    warn("A caixa " + twoDigits(address) + " " + complaint);
}

LineReport AppModel::lineReport() const {
    if (!link.record) return {};
    auto summary = link.record->summary();
    // The bus counts on a clock without a date.
    const auto toDate = std::chrono::system_clock::now() - surroundings.executor->now().time_since_epoch();
    LineReport made{std::move(summary.addresses), summary.droppedBytes, {}};
    for (const LineRecord::Entry& entry : summary.frames)
        made.frames.push_back({std::chrono::time_point_cast<std::chrono::system_clock::duration>(
                                   toDate + entry.at.time_since_epoch()),
                               entry.sent, entry.frame.address, meaningOf(entry)});
    return made;
}

}  // namespace Corvane
