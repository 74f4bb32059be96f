#include "cli/commands.hpp"

#include "cli/modules.hpp"
#include "cli/output.hpp"

#include "Wendril/fields.hpp"
#include "Wendril/filtermath.hpp"
#include "Wendril/text.hpp"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include <unistd.h>

namespace Cli {

using namespace Wendril;

namespace {

constexpr int mostDevices = 16;
constexpr std::size_t curvePoints = 320;
constexpr auto meterPause = std::chrono::milliseconds(60);

// A result that nobody gets is a failure.
void print(const std::string& text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0) return;
    throw std::system_error(errno, std::generic_category(), "não foi possível escrever o resultado");
}

void printJson(const Json& json) { print(json.dump(2) + "\n"); }

void printDevices(const Session& session, const std::vector<DeviceInfo>& devices) {
    if (session.json) {
        Json list = Json::array();
        for (const DeviceInfo& d : devices)
            list.push_back({{"address", d.address},
                            {"product", d.product},
                            {"model", d.model},
                            {"version", d.version},
                            {"date", d.date},
                            {"serial", d.serial}});
        return printJson(list);
    }
    if (devices.empty()) return;
    std::vector<Row> rows;
    for (const DeviceInfo& d : devices)
        rows.push_back({twoDigits(d.address), d.model, d.version, d.date, d.serial});
    print(table({"caixa", "modelo", "versão", "data", "série"}, rows));
}

void printValues(const Session& session, const ModuleValues& values) {
    if (session.json) {
        Json list = Json::array();
        for (const auto& [number, value] : values)
            list.push_back({{"number", number},
                            {"module", labelOf(K7Q::module(number).value())},
                            {"value", jsonOf(value)}});
        return printJson(list);
    }
    std::vector<Row> rows;
    for (const auto& [number, value] : values)
        rows.push_back({std::to_string(number), labelOf(K7Q::module(number).value()), fieldsText(value)});
    print(table({"nº", "módulo", "valor"}, rows));
}

struct AddressRange {
    std::uint8_t first;
    std::uint8_t last;
};

AddressRange parseRange(const std::string& text) {
    const auto number = [&text](std::string_view digits) {
        std::uint8_t value = 0;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
        if (error != std::errc{} || end != digits.data() + digits.size() || value == 0)
            throw std::invalid_argument("a faixa se escreve PRIMEIRO-ÚLTIMO, de 1 a 255, não \"" + text +
                                        "\"");
        return value;
    };
    const std::size_t dash = text.find('-');
    const std::uint8_t first = number(std::string_view(text).substr(0, dash));
    const std::uint8_t last = dash == text.npos ? first : number(std::string_view(text).substr(dash + 1));
    if (first > last) throw std::invalid_argument("a faixa " + text + " está ao contrário");
    return {first, last};
}

void confirmOnTerminal() {
    std::fprintf(
        stderr,
        "As caixas vão perder seus endereços e receber 1, 2, 3… na ordem da linha. Continuar? [s/N] ");
    std::string answer;
    std::getline(std::cin, answer);
    if (answer != "s" && answer != "S" && answer != "sim") throw std::runtime_error("nada foi mudado");
}

// A line that rewrites itself, for people only.
class ProgressLine {
public:
    explicit ProgressLine(std::uint8_t address)
        : address(address) {}
    ~ProgressLine() {
        if (shown) std::fprintf(stderr, "\r\033[K");
    }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    void show(double fraction) {
        if (::isatty(STDERR_FILENO) == 0) return;
        shown = true;
        std::fprintf(stderr, "\rLendo a caixa %s… %3d%%", twoDigits(address).c_str(),
                     static_cast<int>(fraction * 100));
    }

private:
    const std::uint8_t address;
    bool shown = false;
};

std::vector<ModuleRef> parseModules(const std::vector<std::string>& texts) {
    std::vector<ModuleRef> refs;
    for (const std::string& text : texts) {
        refs.push_back(parseModule(text));
        if (refs.back().kind == ModuleKind::vu)
            throw std::invalid_argument(labelOf(refs.back()) + " é um medidor; use o comando meters");
    }
    return refs;
}

Task<ModuleValues> readEach(K7QClient client, std::uint8_t address, std::vector<ModuleRef> refs) {
    ModuleValues values;
    for (const ModuleRef& ref : refs) {
        auto reading = client.read(address, ref);
        ModuleValue value = co_await std::move(reading);
        values.insert_or_assign(ref.index, std::move(value));
    }
    co_return values;
}

Task<ModuleValue> change(K7QClient client, std::uint8_t address, ModuleRef ref, std::vector<Change> changes) {
    auto reading = client.read(address, ref);
    ModuleValue value = co_await std::move(reading);
    for (const Change& apply : changes)
        apply(value);
    auto writing = client.write(address, ref, value);
    co_await std::move(writing);
    co_return value;
}

void printLevels(const Session& session, const std::vector<float>& levels, bool sameLine) {
    if (session.json) {
        Json object = Json::object();
        for (std::size_t i = 0; i < levels.size(); ++i)
            object[std::string(K7Q::meterChannels[i])] = jsonOf(levels[i]);
        return print(object.dump() + "\n");
    }
    std::string text;
    for (std::size_t i = 0; i < levels.size(); ++i) {
        const std::string level = fixed(levels[i], 1);
        text += std::string(K7Q::meterChannels[i]) +
                std::string(level.size() < 7 ? 7 - level.size() : 1, ' ') + level + " dB   ";
    }
    print(sameLine ? "\r" + text : text + "\n");
}

Task<void> watchMeters(K7QClient client, std::uint8_t address, Session session) {
    const bool sameLine = !session.json && ::isatty(STDOUT_FILENO) != 0;
    for (;;) {
        const std::vector<float> levels = co_await client.meters(address);
        printLevels(session, levels, sameLine);
        co_await sleepFor(meterPause);
    }
}

struct StoredPreset {
    std::uint32_t number;
    std::string name;
};

struct PresetDirectory {
    K7QClient::PresetInfo info;
    std::vector<StoredPreset> stored;
};

Task<PresetDirectory> readPresets(K7QClient client, std::uint8_t address) {
    PresetDirectory directory;
    directory.info = co_await client.presetInfo(address);
    for (std::uint32_t n = 0; n < 32; ++n) {
        if (!directory.info.isStored(static_cast<int>(n))) continue;
        std::string name = co_await client.presetName(address, n);
        directory.stored.push_back({n, std::move(name)});
    }
    co_return directory;
}

// A board acknowledges preset commands even when it refuses, so its directory has the last word.
Task<void> changePreset(K7QClient client, std::uint8_t address, Task<void> command,
                        std::function<bool(const K7QClient::PresetInfo&)> done) {
    co_await std::move(command);
    const K7QClient::PresetInfo after = co_await client.presetInfo(address);
    if (!done(after)) throw std::runtime_error("a caixa " + twoDigits(address) + " não fez o que foi pedido");
}

void printPresetState(const Session& session, const char* action, std::uint32_t number) {
    if (session.json)
        printJson(Json{{"preset", number}, {"action", action}});
    else
        print("preset " + std::to_string(number) + " " + action + "\n");
}

// The modules that shape a channel's curve, in map order.
std::vector<ModuleRef> curveModules(const std::string& channel) {
    std::vector<ModuleRef> refs;
    for (const ModuleRef& ref : K7Q::modules())
        if (ref.channel == channel &&
            (ref.kind == ModuleKind::peq || ref.kind == ModuleKind::hpf || ref.kind == ModuleKind::lpf))
            refs.push_back(ref);
    return refs;
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

void listPorts(const Session& session) {
    const auto ports = SerialTransport::availablePorts();
    if (session.json) return printJson(Json(ports));
    for (const std::string& port : ports)
        print(port + "\n");
    if (ports.empty()) std::fprintf(stderr, "nenhuma porta serial encontrada\n");
}

void scan(const Session& session, const std::string& range) {
    const AddressRange addresses = parseRange(range);
    Link link(session.endpoint, session.verbose);
    const auto found = link.run(link.client().scan(addresses.first, addresses.last));
    link.throwIfLost();
    printDevices(session, found);
    if (found.empty()) throw std::runtime_error("nenhuma caixa respondeu de " + range);
}

void assignAddresses(const Session& session, bool confirmed) {
    if (!confirmed) confirmOnTerminal();
    Link link(session.endpoint, session.verbose);
    const auto found = link.run(link.client().assignAddresses(mostDevices));
    printDevices(session, found);
    if (found.empty()) throw std::runtime_error("Nenhuma caixa respondeu. Confira o cabo no \"From PC\".");
}

void showInfo(const Session& session, std::uint8_t address) {
    Link link(session.endpoint, session.verbose);
    printDevices(session, {link.run(link.client().info(address))});
}

void readModules(const Session& session, std::uint8_t address, const std::vector<std::string>& modules) {
    const auto refs = parseModules(modules);
    Link link(session.endpoint, session.verbose);
    ModuleValues values;
    if (refs.empty()) {
        ProgressLine line(address);
        values = link.run(link.client().readAll(address, [&line](double fraction) { line.show(fraction); }));
    } else {
        values = link.run(readEach(link.client(), address, refs));
    }
    printValues(session, values);
}

void writeModule(const Session& session, std::uint8_t address, const std::string& module,
                 const std::vector<std::string>& assignments) {
    const ModuleRef ref = parseModule(module);
    std::vector<Change> changes;
    for (const std::string& assignment : assignments)
        changes.push_back(parseChange(ref, assignment));
    Link link(session.endpoint, session.verbose);
    const ModuleValue written = link.run(change(link.client(), address, ref, changes));
    printValues(session, {{ref.index, written}});
}

void showMeters(const Session& session, std::uint8_t address, bool watch) {
    Link link(session.endpoint, session.verbose);
    if (!watch) return printLevels(session, link.run(link.client().meters(address)), false);
    try {
        link.run(watchMeters(link.client(), address, session));
    } catch (const std::exception&) {
        if (!session.json && ::isatty(STDOUT_FILENO) != 0) print("\n");
        throw;
    }
}

void listPresets(const Session& session, std::uint8_t address) {
    Link link(session.endpoint, session.verbose);
    const PresetDirectory directory = link.run(readPresets(link.client(), address));
    if (session.json) {
        Json list = Json::array();
        for (const StoredPreset& preset : directory.stored)
            list.push_back({{"number", preset.number}, {"name", preset.name}});
        return printJson(Json{
            {"startUp", directory.info.startUp}, {"current", directory.info.current}, {"presets", list}});
    }
    std::vector<Row> rows;
    for (const StoredPreset& preset : directory.stored)
        rows.push_back({std::to_string(preset.number), preset.name,
                        preset.number == directory.info.current ? "atual" : ""});
    print(table({"nº", "nome", ""}, rows));
}

void loadPreset(const Session& session, std::uint8_t address, std::uint32_t number) {
    Link link(session.endpoint, session.verbose);
    const K7QClient client = link.client();
    link.run(changePreset(client, address, client.loadPreset(address, number), [number](const auto& info) {
        return info.current == number && info.isStored(static_cast<int>(number));
    }));
    printPresetState(session, "carregado", number);
}

void savePreset(const Session& session, std::uint8_t address, std::uint32_t number, const std::string& name) {
    Link link(session.endpoint, session.verbose);
    const K7QClient client = link.client();
    link.run(changePreset(client, address, client.savePreset(address, number, name),
                          [number](const auto& info) { return info.isStored(static_cast<int>(number)); }));
    printPresetState(session, "salvo", number);
}

void deletePreset(const Session& session, std::uint8_t address, std::uint32_t number) {
    Link link(session.endpoint, session.verbose);
    const K7QClient client = link.client();
    link.run(changePreset(client, address, client.deletePreset(address, number),
                          [number](const auto& info) { return !info.isStored(static_cast<int>(number)); }));
    printPresetState(session, "apagado", number);
}

void showResponse(const Session& session, std::uint8_t address, const std::string& channel) {
    const auto refs = curveModules(channel);
    if (refs.empty())
        throw std::invalid_argument("não há canal \"" + channel + "\"; há In0, In1, Out0, Out1, Out2, Out3");
    Link link(session.endpoint, session.verbose);
    const auto frequencies = FilterMath::frequencies(curvePoints, 20, 20000);
    const auto db = curve(link.run(readEach(link.client(), address, refs)), frequencies);
    if (session.json) return printJson(Json{{"channel", channel}, {"frequencies", frequencies}, {"db", db}});
    std::vector<Row> rows;
    for (std::size_t i = 0; i < frequencies.size(); ++i)
        rows.push_back({fixed(frequencies[i], 2), fixed(db[i], 2)});
    print(table({"Hz", "dB"}, rows));
}

}  // namespace Cli
