#include "cli/commands.hpp"
#include "cli/curves.hpp"
#include "cli/file.hpp"
#include "cli/html.hpp"
#include "cli/insist.hpp"
#include "cli/modules.hpp"
#include "cli/numbers.hpp"
#include "cli/output.hpp"
#include "cli/presets.hpp"

#include "Wendril/limits.hpp"
#include "Wendril/text.hpp"

#include <cmath>
#include <ctime>

namespace Cli {

using namespace Wendril;

namespace {

using Html::Cell;
using Html::Table;

// For A4 and for the screen. The page loads nothing, so that it can be kept as one file.
constexpr const char* style = R"(
:root { color-scheme: light; }
* { box-sizing: border-box; }
body { margin: 0 auto; max-width: 210mm; padding: 12mm 14mm; background: #fff; color: #1d1d1f;
  font: 10pt/1.4 "Inter", "Noto Sans", "DejaVu Sans", "Liberation Sans", Arial, sans-serif; }
h1 { margin: 0; font-size: 20pt; font-weight: 600; letter-spacing: -.01em; }
.about { margin: 1mm 0 7mm; color: #666; }
h2 { margin: 12mm 0 1mm; padding-top: 3mm; border-top: .6mm solid #d9741b; font-size: 15pt; font-weight: 600; }
h3 { margin: 6mm 0 1.5mm; font-size: 11pt; font-weight: 600; }
h2, h3, caption { break-after: avoid; }
table { width: 100%; margin: 0 0 4mm; border-collapse: collapse; font-size: 8.5pt; line-height: 1.25;
  font-variant-numeric: tabular-nums; break-inside: avoid; }
caption { padding: 0 0 1mm 1.5mm; text-align: left; font-weight: 600; color: #a5520c; }
th, td { padding: .8mm 1.5mm; text-align: left; vertical-align: baseline; }
thead th { border-bottom: .3mm solid #888; font-weight: 600; color: #555; }
tbody th { font-weight: 500; white-space: nowrap; }
tbody tr { border-bottom: .15mm solid #ddd; }
.number { text-align: right; white-space: nowrap; }
.number + :not(.number) { padding-left: 4mm; }
.off { color: #8a8a8a; }
.pairs { display: grid; grid-template-columns: 1fr 1fr; gap: 0 7mm; align-items: start; }
.graph { margin: 0 0 4mm; break-inside: avoid; }
.graph text { font-family: inherit; }
.graph svg { display: block; width: 100%; height: auto; }
@page { size: A4; margin: 16mm 14mm 16mm;
  @bottom-right { content: counter(page) " / " counter(pages); font: 8pt sans-serif; color: #666; } }
@media print {
  body { max-width: none; padding: 0; font-size: 9pt; }
  h2 { margin-top: 4mm; }
}
@media screen and (max-width: 150mm) { body { padding: 5mm; } .pairs { grid-template-columns: 1fr; } }
)";

// "−3,5": all digits that the board holds, and at least so many decimals.
std::string number(float value, std::size_t decimals) {
    if (!std::isfinite(value)) return "\u2014";
    std::string text = numberText(value);
    std::size_t point = text.find('.');
    if (point == text.npos && decimals > 0) {
        point = text.size();
        text += ',';
    } else if (point != text.npos) {
        text[point] = ',';
    }
    if (decimals > 0 && text.size() - point - 1 < decimals)
        text.append(decimals + point + 1 - text.size(), '0');
    return text.starts_with('-') ? "\u2212" + text.substr(1) : text;
}

std::string title(std::string_view channel) {
    const std::string place(1, static_cast<char>(channel.back() + 1));
    return (isInput(channel) ? "Entrada " : "Saída ") + place;
}

// What a page tells of one speaker.
struct Speaker {
    ShowSpeaker held;
    K7QClient::PresetInfo presets;

    // A setting in the case that its kind has.
    template <class Case>
    const Case& at(ModuleKind kind, std::string_view channel, int band = 0) const {
        return *held.settings.at(K7Q::index(kind, channel, band)).as<Case>();
    }
};

Table channelTable(const Speaker& speaker) {
    Table table{
        "", {{"Canal"}, {"Ganho dB", true}, {"Mudo"}, {"Polaridade"}, {"Delay ms", true}, {"Estado"}}, {}};
    for (const std::string_view channel : K7Q::meterChannels) {
        const auto& gain = speaker.at<GainValue>(ModuleKind::gain, channel);
        const auto& delay = speaker.at<DelayValue>(ModuleKind::delay, channel);
        table.rows.push_back({title(channel) + " (" + std::string(channel) + ")",
                              {number(gain.db, 1), gain.mute},
                              gain.mute ? "mudo" : "",
                              gain.phaseNormal ? "0°" : "180°",
                              {number(delay.ms, 2), delay.bypass},
                              {delay.bypass ? "bypass" : "ligado", delay.bypass}});
    }
    return table;
}

Table routingTable(const Speaker& speaker) {
    Table table{"", {{"Entrada"}}, {}};
    for (const std::string_view output : K7Q::outputs)
        table.columns.push_back({title(output), true});
    for (const std::string_view input : K7Q::inputs) {
        std::vector<Cell> row{title(input)};
        for (const std::string_view output : K7Q::outputs) {
            const auto& point =
                speaker.at<MixerValue>(ModuleKind::mixer, std::string(input) + "-" + std::string(output));
            row.emplace_back((point.mute ? "mudo, " : "") + number(point.db, 1) + " dB" +
                                 (point.phaseNormal ? "" : ", 180°"),
                             point.mute);
        }
        table.rows.push_back(std::move(row));
    }
    return table;
}

Table crossoverTable(const Speaker& speaker) {
    Table table{"", {{"Saída"}, {"Filtro"}, {"Hz", true}, {"Tipo"}, {"Estado"}}, {}};
    for (const std::string_view output : K7Q::outputs)
        for (const auto& [kind, name] :
             {std::pair(ModuleKind::hpf, "HPF"), std::pair(ModuleKind::lpf, "LPF")}) {
            const auto& filter = speaker.at<FilterValue>(kind, output);
            const bool isOff = filter.bypass;
            table.rows.push_back({kind == ModuleKind::hpf ? title(output) : "",
                                  {name, isOff},
                                  {std::to_string(filter.fc), isOff},
                                  {typeName(kind, filter.type), isOff},
                                  {isOff ? "bypass" : "ligado", isOff}});
        }
    return table;
}

// Compressor, limiter and gate have these columns; a limiter has no attack time.
Table dynamicsTable(const char* caption, const char* firstTitle) {
    return {caption,
            {{firstTitle},
             {"Threshold dB", true},
             {"Ratio", true},
             {"Hold ms", true},
             {"Attack ms", true},
             {"Release ms", true},
             {"Knee dB", true},
             {"Estado"}},
            {}};
}

template <class Value>
std::vector<Cell> dynamicsRow(std::string_view channel, const Value& value, const std::string& attack,
                              const char* state, bool isOff) {
    return {title(channel),
            {number(value.threshold, 1), isOff},
            {number(value.ratio, 1) + " : 1", isOff},
            {std::to_string(value.hold), isOff},
            {attack, isOff},
            {std::to_string(value.release), isOff},
            {std::to_string(value.knee), isOff},
            {state, isOff}};
}

std::string dynamicsTables(const Speaker& speaker) {
    Table compressors = dynamicsTable("Compressor", "Saída");
    Table limiters = dynamicsTable("Limiter", "Saída");
    Table gates = dynamicsTable("Noise gate", "Entrada");
    for (const std::string_view output : K7Q::outputs) {
        const auto& compressor = speaker.at<DynamicsValue>(ModuleKind::compressor, output);
        const bool isFlat = compressor.ratio == 1;
        compressors.rows.push_back(dynamicsRow(output, compressor, std::to_string(compressor.attack),
                                               isFlat ? "sem ação" : "ligado", isFlat));
        const bool isOff = speaker.at<bool>(ModuleKind::limiterBypass, output);
        limiters.rows.push_back(dynamicsRow(output, speaker.at<LimiterValue>(ModuleKind::limiter, output), "",
                                            isOff ? "bypass" : "ligado", isOff));
    }
    for (const std::string_view input : K7Q::inputs) {
        const auto& gate = speaker.at<DynamicsValue>(ModuleKind::gate, input);
        const bool isOff = speaker.at<bool>(ModuleKind::gateBypass, input);
        gates.rows.push_back(
            dynamicsRow(input, gate, std::to_string(gate.attack), isOff ? "bypass" : "ligado", isOff));
    }
    return compressors.markup() + limiters.markup() + gates.markup();
}

Table equaliserTable(const Speaker& speaker, std::string_view channel) {
    Table table{
        title(channel), {{"Banda"}, {"Tipo"}, {"Hz", true}, {"dB", true}, {"Q", true}, {"Estado"}}, {}};
    for (const ModuleRef& module : K7Q::modules()) {
        if (module.kind != ModuleKind::peq || module.channel != channel) continue;
        const auto& band = *speaker.held.settings.at(module.index).as<PeqValue>();
        const bool isOff = band.bypass;
        table.rows.push_back({std::to_string(module.band + 1),
                              {typeName(module.kind, band.type), isOff},
                              {std::to_string(band.fc), isOff},
                              {number(band.gain, 1), isOff},
                              {number(band.q, 2), isOff},
                              {isOff ? "bypass" : "ligado", isOff}});
    }
    return table;
}

Table presetTable(const Speaker& speaker) {
    Table table{"", {{"Nº"}, {"Nome"}, {""}}, {}};
    for (const auto& [number, name] : speaker.held.presets) {
        std::string role = number == speaker.presets.current ? "atual" : "";
        if (number == speaker.presets.startUp) role += role.empty() ? "ao ligar" : ", ao ligar";
        table.rows.push_back({std::to_string(number), name, role});
    }
    return table;
}

template <class Channels>
std::string graph(const Speaker& speaker, const Channels& channels) {
    std::vector<Curve> curves;
    for (const std::string_view channel : channels) {
        curves.push_back(curveOf(std::string(channel), speaker.held.settings, false));
        curves.back().name = title(channel);
    }
    return Html::block("div", "graph", svgOf(curves));
}

// Each speaker begins on a new sheet, and each of its sheets names it.
std::string pageRule(std::uint8_t address) {
    return "@page caixa" + std::to_string(address) + " { @top-right { content: \"Caixa " +
           twoDigits(address) + "\"; font: 8pt sans-serif; color: #666; } }\n.caixa" +
           std::to_string(address) + " { page: caixa" + std::to_string(address) + "; }\n";
}

std::string sectionOf(const Speaker& speaker) {
    const DeviceInfo& info = speaker.held.info;
    std::string equalisers;
    for (const std::string_view channel : K7Q::meterChannels)
        equalisers += equaliserTable(speaker, channel).markup();
    const std::string presets = speaker.held.presets.empty() ? Html::element("p", "Nenhum preset guardado.")
                                                             : presetTable(speaker).markup();
    return Html::block("section", "caixa" + std::to_string(info.address),
                       Html::element("h2", "Caixa " + twoDigits(info.address) + " · " + info.model +
                                               " · série " + info.serial) +
                           Html::element("h3", "Canais") + channelTable(speaker).markup() +
                           Html::element("h3", "Roteamento") + routingTable(speaker).markup() +
                           Html::element("h3", "Presets") + presets +
                           Html::element("h3", "Resposta das saídas, com crossover") +
                           graph(speaker, K7Q::outputs) + Html::element("h3", "Crossover") +
                           crossoverTable(speaker).markup() + Html::element("h3", "Resposta das entradas") +
                           graph(speaker, K7Q::inputs) + Html::element("h3", "Equalizadores") +
                           Html::block("div", "pairs", equalisers) + Html::element("h3", "Dinâmica") +
                           dynamicsTables(speaker));
}

std::string now() {
    const std::time_t seconds = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&seconds, &local);
    char text[32];
    std::strftime(text, sizeof text, "%d/%m/%Y, %H:%M", &local);
    return text;
}

std::string pageOf(const std::vector<Speaker>& speakers, const std::string& place) {
    Table identities{"", {{"Caixa"}, {"Modelo"}, {"Série"}, {"Versão"}, {"Data"}}, {}};
    std::string sections;
    std::string pages;
    for (const Speaker& speaker : speakers) {
        const DeviceInfo& info = speaker.held.info;
        identities.rows.push_back(
            {twoDigits(info.address), info.model, info.serial, info.version, info.date});
        sections += sectionOf(speaker);
        if (speakers.size() > 1) pages += pageRule(info.address);
    }
    const std::string heading = "Relatório das caixas";
    return "<!DOCTYPE html>\n<html lang=\"pt-BR\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta name=\"viewport\" content=\"width=device-width\">\n" +
           Html::element("title", heading + ", " + now()) + "<style>" + style + pages +
           "</style>\n</head>\n" +
           Html::block("body", "",
                       Html::element("h1", heading) +
                           Html::block("p", "about", Html::escaped(now() + " · " + place) + "\n") +
                           identities.markup() + sections) +
           "</html>\n";
}

}  // namespace

void report(Session& session, const Addresses& addresses, const std::string& file) {
    std::vector<Speaker> speakers;
    for (const std::uint8_t address : session.resolve(addresses)) {
        const auto presets =
            insist(session, address, [=](const K7QClient& client) { return client.presetInfo(address); });
        speakers.push_back({readSpeaker(session, readInfo(session, address)), presets});
    }
    writeFile(file, pageOf(speakers, session.endpoint.name()));
    if (session.json) return printJson({{"file", file}, {"speakers", speakers.size()}});
    print("caixas descritas em " + file + ": " + std::to_string(speakers.size()) + "\n");
}

}  // namespace Cli
