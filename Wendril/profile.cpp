#include "Wendril/profile.hpp"

#include "Wendril/runtime/contract.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <functional>
#include <system_error>
#include <utility>

namespace Wendril {

const std::array<ModuleKindName, 12> moduleKindNames{{
    {ModuleKind::gain, "GAIN"},
    {ModuleKind::peq, "PEQ"},
    {ModuleKind::hpf, "HPF"},
    {ModuleKind::lpf, "LPF"},
    {ModuleKind::compressor, "RMS_DRC"},
    {ModuleKind::limiter, "PEAK_DRC"},
    {ModuleKind::limiterBypass, "PEAK_DRC_BPS"},
    {ModuleKind::gate, "NG"},
    {ModuleKind::gateBypass, "NG_BPS"},
    {ModuleKind::mixer, "MIXER"},
    {ModuleKind::delay, "DELAY"},
    {ModuleKind::vu, "VU"},
}};

std::string_view nameOf(ModuleKind kind) { return moduleKindNames.at(static_cast<std::size_t>(kind)).name; }

std::optional<ModuleKind> moduleKindFromRaw(std::string_view raw) {
    for (const auto& entry : moduleKindNames)
        if (entry.name == raw) return entry.kind;
    return std::nullopt;
}

std::string labelOf(const ModuleRef& ref) {
    std::string label = std::string(nameOf(ref.kind)) + "/" + ref.channel;
    if (ref.kind == ModuleKind::peq) label += "/" + std::to_string(ref.band);
    return label;
}

namespace {

// One module an entry: kind, channel, number, band.
constexpr std::string_view moduleMap = R"(
GAIN,In0,1,0 GAIN,In1,2,0 GAIN,Out0,3,0 GAIN,Out1,4,0 GAIN,Out2,5,0 GAIN,Out3,6,0
PEQ,In0,7,0 PEQ,In0,8,1 PEQ,In0,9,2 PEQ,In0,10,3
PEQ,In1,11,0 PEQ,In1,12,1 PEQ,In1,13,2 PEQ,In1,14,3
PEQ,Out0,15,0 PEQ,Out0,16,1 PEQ,Out0,17,2 PEQ,Out0,18,3 PEQ,Out0,19,4 PEQ,Out0,20,5 PEQ,Out0,21,6 PEQ,Out0,22,7 PEQ,Out0,23,8 PEQ,Out0,24,9
PEQ,Out1,25,0 PEQ,Out1,26,1 PEQ,Out1,27,2 PEQ,Out1,28,3 PEQ,Out1,29,4 PEQ,Out1,30,5 PEQ,Out1,31,6 PEQ,Out1,32,7 PEQ,Out1,33,8 PEQ,Out1,34,9
PEQ,Out2,35,0 PEQ,Out2,36,1 PEQ,Out2,37,2 PEQ,Out2,38,3 PEQ,Out2,39,4 PEQ,Out2,40,5 PEQ,Out2,41,6 PEQ,Out2,42,7 PEQ,Out2,43,8 PEQ,Out2,44,9
PEQ,Out3,45,0 PEQ,Out3,46,1 PEQ,Out3,47,2 PEQ,Out3,48,3 PEQ,Out3,49,4 PEQ,Out3,50,5 PEQ,Out3,51,6 PEQ,Out3,52,7 PEQ,Out3,53,8 PEQ,Out3,54,9
HPF,Out0,55,0 HPF,Out1,56,0 HPF,Out2,57,0 HPF,Out3,58,0
LPF,Out0,59,0 LPF,Out1,60,0 LPF,Out2,61,0 LPF,Out3,62,0
RMS_DRC,Out0,63,0 RMS_DRC,Out1,64,0 RMS_DRC,Out2,65,0 RMS_DRC,Out3,66,0
PEAK_DRC,Out0,67,0 PEAK_DRC,Out1,68,0 PEAK_DRC,Out2,69,0 PEAK_DRC,Out3,70,0
PEAK_DRC_BPS,Out0,71,0 PEAK_DRC_BPS,Out1,72,0 PEAK_DRC_BPS,Out2,73,0 PEAK_DRC_BPS,Out3,74,0
NG,In0,75,0 NG,In1,76,0
NG_BPS,In0,77,0 NG_BPS,In1,78,0
MIXER,In0-Out0,79,0 MIXER,In1-Out0,80,0 MIXER,In0-Out1,81,0 MIXER,In1-Out1,82,0 MIXER,In0-Out2,83,0 MIXER,In1-Out2,84,0 MIXER,In0-Out3,85,0 MIXER,In1-Out3,86,0
DELAY,In0,87,0 DELAY,In1,88,0 DELAY,Out0,89,0 DELAY,Out1,90,0 DELAY,Out2,91,0 DELAY,Out3,92,0
VU,In0,93,0 VU,In1,94,0 VU,Out0,95,0 VU,Out1,96,0 VU,Out2,97,0 VU,Out3,98,0
)";

std::vector<std::string_view> split(std::string_view text, std::string_view separators) {
    std::vector<std::string_view> pieces;
    for (std::size_t from = 0; (from = text.find_first_not_of(separators, from)) != text.npos;) {
        const std::size_t to = std::min(text.find_first_of(separators, from), text.size());
        pieces.push_back(text.substr(from, to - from));
        from = to;
    }
    return pieces;
}

template <class Number>
std::optional<Number> decimal(std::string_view text) {
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return number;
}

ModuleRef parsed(std::string_view entry) {
    const auto fields = split(entry, ",");
    if (fields.size() >= 4) {
        const auto kind = moduleKindFromRaw(fields[0]);
        const auto number = decimal<std::uint8_t>(fields[2]);
        const auto band = decimal<int>(fields[3]);
        if (kind && number && band) return {*kind, std::string(fields[1]), *number, *band};
    }
    contractBroken("the module map holds the unreadable entry " + std::string(entry));
}

// Module numbers are one byte, so the map from number to module is an array.
std::array<const ModuleRef*, 256> indexed(const std::vector<ModuleRef>& modules) {
    std::array<const ModuleRef*, 256> byIndex{};
    for (const ModuleRef& ref : modules)
        if (std::exchange(byIndex[ref.index], &ref))
            contractBroken("the module map holds number " + std::to_string(ref.index) + " twice");
    return byIndex;
}

}  // namespace

namespace K7Q {

const std::vector<ModuleRef>& modules() {
    // Never destroyed: the thread of a dropped line may still read it while the process ends.
    static const auto* const list = [] {
        auto* const refs = new std::vector<ModuleRef>;
        for (const std::string_view entry : split(moduleMap, " \n"))
            refs->push_back(parsed(entry));
        return refs;
    }();
    return *list;
}

std::optional<ModuleRef> module(std::uint8_t index) {
    static const auto byIndex = indexed(modules());
    if (!byIndex[index]) return std::nullopt;
    return *byIndex[index];
}

std::uint8_t index(ModuleKind kind, std::string_view channel, int band) {
    for (const ModuleRef& ref : modules())
        if (ref.kind == kind && ref.channel == channel && ref.band == band) return ref.index;
    contractBroken("the board has no module " + std::string(nameOf(kind)) + " " + std::string(channel) +
                   " band " + std::to_string(band));
}

std::uint32_t nearestTime(double ms) {
    // Within the steps, so that no difference of two of them is lost beside a huge time.
    ms = std::clamp(ms, double{timeSteps.front()}, double{timeSteps.back()});
    std::uint32_t best = timeSteps.front();
    for (const std::uint32_t step : timeSteps)
        if (std::abs(step - ms) < std::abs(best - ms)) best = step;
    return best;
}

}  // namespace K7Q

}  // namespace Wendril

std::size_t std::hash<Wendril::ModuleRef>::operator()(const Wendril::ModuleRef& ref) const noexcept {
    std::size_t seed = std::hash<std::string_view>{}(Wendril::nameOf(ref.kind));
    for (const std::size_t part :
         {std::hash<std::string>{}(ref.channel), std::size_t{ref.index}, std::hash<int>{}(ref.band)})
        seed ^= part + 0x9E3779B9 + (seed << 6) + (seed >> 2);
    return seed;
}
