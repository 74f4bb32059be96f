#include "cli/commands.hpp"
#include "cli/output.hpp"
#include "cli/settings.hpp"

#include "Wendril/filtermath.hpp"

#include <span>
#include <stdexcept>

namespace Cli {

using namespace Wendril;

namespace {

constexpr std::size_t curvePoints = 320;
constexpr double lowestFrequency = 20;
constexpr double highestFrequency = 20000;

// The modules that shape a channel's curve, in map order.
std::vector<ModuleRef> curveModules(const std::string& channel) {
    std::vector<ModuleRef> modules;
    for (const ModuleRef& module : K7Q::modules())
        if (module.channel == channel && (module.kind == ModuleKind::peq || module.kind == ModuleKind::hpf ||
                                          module.kind == ModuleKind::lpf))
            modules.push_back(module);
    return modules;
}

std::vector<double> curve(const ModuleValues& values, std::span<const double> frequencies) {
    std::vector<PeqValue> bands;
    FilterMath::Crossover crossover;
    for (const auto& [number, value] : values) {
        if (const auto* band = value.as<PeqValue>()) bands.push_back(*band);
        const auto* filter = value.as<FilterValue>();
        if (!filter) continue;
        (K7Q::module(number)->kind == ModuleKind::hpf ? crossover.highPass : crossover.lowPass) = *filter;
    }
    return FilterMath::response(bands, crossover, frequencies);
}

}  // namespace

void showResponse(Session& session, const Addresses& addresses, const std::string& channel) {
    const auto modules = curveModules(channel);
    if (modules.empty())
        throw std::invalid_argument("não há canal \"" + channel + "\"; há In0, In1, Out0, Out1, Out2, Out3");
    const auto frequencies = FilterMath::frequencies(curvePoints, lowestFrequency, highestFrequency);
    session.forEach(addresses, [&](std::uint8_t address) -> Answer {
        Link& link = session.link();
        const auto db = curve(link.run(readEach(link.client(), address, modules), address), frequencies);
        std::vector<Row> rows;
        for (std::size_t i = 0; i < frequencies.size(); ++i)
            rows.push_back({fixed(frequencies[i], 2), fixed(db[i], 2)});
        return {Json{{"channel", channel}, {"frequencies", frequencies}, {"db", db}},
                table({"Hz", "dB"}, std::move(rows))};
    });
}

}  // namespace Cli
