#include "app/model/words.hpp"

#include "Wendril/fields.hpp"
#include "Wendril/limits.hpp"
#include "Wendril/text.hpp"

#include <algorithm>
#include <optional>

namespace Corvane {

using namespace Wendril;

std::string wordFor(ModuleKind kind) {
    switch (kind) {
    case ModuleKind::gain:
        return "GANHO";
    case ModuleKind::peq:
        return "PEQ";
    case ModuleKind::hpf:
        return "HPF";
    case ModuleKind::lpf:
        return "LPF";
    case ModuleKind::compressor:
        return "COMPRESSOR";
    case ModuleKind::limiter:
    case ModuleKind::limiterBypass:
        return "LIMITER";
    case ModuleKind::gate:
    case ModuleKind::gateBypass:
        return "NOISE GATE";
    case ModuleKind::mixer:
        return "ROTEAMENTO";
    case ModuleKind::delay:
        return "DELAY";
    case ModuleKind::vu:
        return "NÍVEL";
    }
    return {};
}

std::string wordFor(std::string_view channel) {
    if (const auto dash = channel.find('-'); dash != std::string_view::npos)
        return wordFor(channel.substr(0, dash)) + " → " + wordFor(channel.substr(dash + 1));
    const auto number = [](const auto& channels, std::string_view name) {
        return std::to_string(std::ranges::find(channels, name) - channels.begin() + 1);
    };
    return isInput(channel) ? "ENTRADA " + number(K7Q::inputs, channel)
                            : "SAÍDA " + number(K7Q::outputs, channel);
}

std::string wordFor(const ModuleRef& module) {
    const std::string band = module.kind == ModuleKind::peq ? " " + std::to_string(module.band + 1) : "";
    return wordFor(module.kind) + band + ", " + wordFor(module.channel);
}

std::string wordFor(const std::vector<std::uint8_t>& addresses) {
    if (addresses.size() == 1) return "caixa " + twoDigits(addresses.front());
    return std::to_string(addresses.size()) + " caixas";
}

namespace {

std::string functionName(Fun function) {
    switch (function) {
    case Fun::ack:
        return "confirmação";
    case Fun::linkStatus:
        return "presença";
    case Fun::devInfo:
        return "identificação";
    case Fun::moduleGet:
        return "leitura";
    case Fun::moduleSet:
        return "ajuste";
    case Fun::presetInfoGet:
        return "lista de presets";
    case Fun::presetInfoSet:
        return "escolha do preset inicial";
    case Fun::presetName:
        return "nome do preset";
    case Fun::presetSave:
        return "salvar preset";
    case Fun::presetLoad:
        return "carregar preset";
    case Fun::presetDelete:
        return "apagar preset";
    case Fun::presetWrite:
        return "gravação de preset";
    case Fun::netStart:
        return "início do endereçamento";
    case Fun::netAddressSet:
        return "novo endereço";
    case Fun::modelSet:
        return "modelo";
    case Fun::groupSet:
        return "grupo";
    }
    return {};
}

std::string functionWord(std::uint8_t code) {
    const auto function = funFromRaw(code);
    return function ? functionName(*function) : "função " + std::to_string(code);
}

// The module number is the second byte of the payload, the value follows after the fourth.
std::string moduleText(ByteView payload, bool withValue) {
    const auto module = K7Q::module(u8(payload, 1));
    if (!module) return "módulo " + std::to_string(u8(payload, 1));
    std::string text = wordFor(*module);
    const auto value = withValue && payload.size() > 4 ? ModuleValue::decode(module->kind, payload.subspan(4))
                                                       : std::optional<ModuleValue>();
    return value ? text + ": " + fieldsText(*value) : text;
}

std::string detailOf(const LineRecord::Entry& entry) {
    const ByteView payload(entry.frame.payload);
    switch (entry.frame.function().value_or(Fun::linkStatus)) {
    case Fun::ack:
        return functionWord(u8(payload, 1)) + (u8(payload, 0) == 0 ? "" : ", recusado");
    case Fun::moduleGet:
        return moduleText(payload, !entry.sent);
    case Fun::moduleSet:
        return moduleText(payload, true);
    case Fun::presetName:
    case Fun::presetSave:
    case Fun::presetLoad:
        return std::to_string(u32(payload, 0));
    case Fun::netAddressSet:
        return twoDigits(u8(payload, 0));
    default:
        return {};
    }
}

}  // namespace

std::string meaningOf(const LineRecord::Entry& entry) {
    const std::string detail = detailOf(entry);
    return functionWord(entry.frame.fun) + (detail.empty() ? "" : ": " + detail);
}

}  // namespace Corvane
