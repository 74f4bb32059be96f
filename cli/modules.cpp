#include "cli/modules.hpp"

#include "cli/numbers.hpp"

#include "Wendril/fields.hpp"
#include "Wendril/filtermath.hpp"
#include "Wendril/limits.hpp"

#include <algorithm>
#include <cctype>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <type_traits>

namespace Cli {

using namespace Wendril;

namespace {

[[noreturn]] void refuse(const std::string& text) { throw std::invalid_argument(text); }

std::string lowered(std::string text) {
    std::ranges::transform(text, text.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

void checkLimits(const ModuleRef& module, const std::string& field, double value) {
    const Limits limits = limitsOf(module.kind, field, module.channel);
    if (value >= limits.lowest && value <= limits.highest) return;
    refuse(field + " de " + labelOf(module) + " vai de " + numberText(limits.lowest) + " a " +
           numberText(limits.highest));
}

bool isTime(std::string_view field) { return field == "hold" || field == "attack" || field == "release"; }

void checkTime(const std::string& field, std::uint32_t ms) {
    const std::uint32_t nearest = K7Q::nearestTime(ms);
    if (ms == 0 || ms == nearest) return;
    refuse(field + " aceita só os tempos da placa; o mais próximo é " + std::to_string(nearest) + " ms");
}

std::string slopeList() {
    std::string list;
    for (const auto& slope : FilterMath::slopes)
        list +=
            (list.empty() ? "" : ", ") + std::to_string(slope.code) + " (" + std::string(slope.name) + ")";
    return list;
}

void parseInto(const ModuleRef& module, const std::string& field, std::string text, float& target) {
    std::ranges::replace(text, ',', '.');
    const auto number = parseNumber<float>(text);
    if (!number) refuse(field + " precisa de um número, não \"" + text + "\"");
    checkLimits(module, field, *number);
    target = *number;
}

void parseInto(const ModuleRef& module, const std::string& field, const std::string& text,
               std::uint32_t& target) {
    const auto number = parseNumber<std::uint32_t>(text);
    if (!number) refuse(field + " precisa de um número inteiro, não \"" + text + "\"");
    checkLimits(module, field, *number);
    if (isTime(field)) checkTime(field, *number);
    target = *number;
}

void parseInto(const ModuleRef&, const std::string& field, const std::string& text, bool& target) {
    if (text != "0" && text != "1" && text != "false" && text != "true")
        refuse(field + " aceita 0 ou 1 (false ou true), não \"" + text + "\"");
    target = text == "1" || text == "true";
}

void parseInto(const ModuleRef& module, const std::string& field, const std::string& text,
               std::uint8_t& target) {
    const auto code = parseNumber<std::uint8_t>(text);
    if (module.kind == ModuleKind::peq) {
        if (!code || !peqTypeFromRaw(*code))
            refuse(field + " aceita 0 (peak), 1 (low shelf) ou 2 (high shelf)");
    } else if (!code || std::ranges::none_of(FilterMath::slopes,
                                             [&](const auto& slope) { return slope.code == *code; }))
        refuse(field + " aceita " + slopeList());
    target = *code;
}

std::string kindList() {
    std::string list;
    for (const auto& entry : moduleKindNames)
        list += (list.empty() ? "" : ", ") + std::string(entry.name);
    return list;
}

// "PEQ/In0/0 a PEQ/In0/3, PEQ/In1/0 a …": the bands of a channel are one range.
std::string labelsOfKind(const std::string& kind) {
    std::string list;
    const auto& modules = K7Q::modules();
    for (auto first = modules.begin(); first != modules.end();) {
        const auto next = std::find_if(first, modules.end(), [&first](const ModuleRef& ref) {
            return ref.kind != first->kind || ref.channel != first->channel;
        });
        if (lowered(std::string(nameOf(first->kind))) == kind) {
            list += (list.empty() ? "" : ", ") + labelOf(*first);
            if (next - first > 1) list += " a " + labelOf(*(next - 1));
        }
        first = next;
    }
    return list;
}

}  // namespace

ModuleRef parseModule(const std::string& text) {
    if (const auto number = parseNumber<std::uint8_t>(text)) {
        if (const auto ref = K7Q::module(*number)) return *ref;
        refuse("não há módulo " + text + "; os números vão de 1 a " + std::to_string(K7Q::modules().size()));
    }
    const std::string wanted = lowered(text);
    for (const ModuleRef& ref : K7Q::modules())
        if (lowered(labelOf(ref)) == wanted) return ref;
    const std::string ofKind = labelsOfKind(wanted.substr(0, wanted.find('/')));
    if (ofKind.empty()) refuse("não há módulo \"" + text + "\"; os tipos são " + kindList());
    refuse("não há módulo \"" + text + "\"; há " + ofKind);
}

Change parseChange(const ModuleRef& module, const std::string& text) {
    auto value = ModuleValue::factory(module);
    if (!value) refuse(labelOf(module) + " é um medidor e não se ajusta");
    const std::size_t equals = text.find('=');
    const std::string wanted = text.substr(0, equals);
    std::optional<Change> change;
    std::string names;
    forEachField(*value, [&](const char* name, auto& field) {
        names += (names.empty() ? "" : ", ") + std::string(name);
        if (wanted != name || equals == text.npos) return;
        parseInto(module, wanted, text.substr(equals + 1), field);
        change = [wanted, parsed = field](ModuleValue& target) {
            forEachField(target, [&](const char* candidate, auto& slot) {
                if constexpr (std::is_same_v<std::remove_cvref_t<decltype(slot)>,
                                             std::remove_cvref_t<decltype(parsed)>>)
                    if (wanted == candidate) slot = parsed;
            });
        };
    });
    if (equals == text.npos) refuse("escreva campo=valor, não \"" + text + "\"; os campos são " + names);
    if (!change) refuse(labelOf(module) + " não tem o campo \"" + wanted + "\"; os campos são " + names);
    return *change;
}

}  // namespace Cli
