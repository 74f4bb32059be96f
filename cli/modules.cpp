#include "cli/modules.hpp"

#include "cli/numbers.hpp"

#include "Wendril/fields.hpp"
#include "Wendril/filtermath.hpp"
#include "Wendril/limits.hpp"

#include <algorithm>
#include <cctype>
#include <cmath>
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

// "2,5k" is 2500; decimal point or comma.
std::optional<double> parseDecimal(std::string text) {
    const bool isThousands = text.ends_with('k') || text.ends_with('K');
    if (isThousands) text.pop_back();
    std::ranges::replace(text, ',', '.');
    const auto number = parseNumber<double>(text);
    // In the decimal notation of the user: 2.3k is 2300 exactly.
    return number && isThousands ? std::round(*number * 1e6) / 1e3 : number;
}

constexpr struct {
    PeqType type;
    std::string_view name;
} peqTypeNames[] = {
    {PeqType::peak, "peak"},
    {PeqType::lowShelf, "low shelf"},
    {PeqType::highShelf, "high shelf"},
};

std::string peqTypeList() {
    std::string list;
    for (const auto& [type, name] : peqTypeNames)
        list += (list.empty() ? "" : ", ") + std::to_string(static_cast<int>(type)) + " (" +
                std::string(name) + ")";
    return list;
}

// Names compare without blanks, capitals and the unit: "linkwitz24" is "Linkwitz 24 dB".
std::string bare(std::string_view name) {
    std::string letters = lowered(std::string(name));
    std::erase_if(letters, [](char c) { return c == ' ' || c == '-' || c == '_'; });
    if (letters.ends_with("db")) letters.resize(letters.size() - 2);
    return letters;
}

std::optional<std::uint8_t> codeOfType(ModuleKind kind, std::string_view text) {
    if (kind == ModuleKind::peq) {
        for (const auto& [type, name] : peqTypeNames)
            if (bare(name) == bare(text)) return static_cast<std::uint8_t>(type);
    } else {
        for (const auto& slope : FilterMath::slopes)
            if (bare(slope.name) == bare(text)) return slope.code;
    }
    return std::nullopt;
}

void parseInto(const ModuleRef& module, const std::string& field, const std::string& text, float& target) {
    const auto number = parseDecimal(text);
    if (!number) refuse(field + " precisa de um número, não \"" + text + "\"");
    checkLimits(module, field, *number);
    target = static_cast<float>(*number);
}

void parseInto(const ModuleRef& module, const std::string& field, const std::string& text,
               std::uint32_t& target) {
    const auto number = parseDecimal(text);
    if (!number || std::trunc(*number) != *number)
        refuse(field + " precisa de um número inteiro, não \"" + text + "\"");
    checkLimits(module, field, *number);
    target = static_cast<std::uint32_t>(*number);
    if (isTime(field)) checkTime(field, target);
}

void parseInto(const ModuleRef&, const std::string& field, const std::string& text, bool& target) {
    if (text != "0" && text != "1" && text != "false" && text != "true")
        refuse(field + " aceita 0 ou 1 (false ou true), não \"" + text + "\"");
    target = text == "1" || text == "true";
}

void parseInto(const ModuleRef& module, const std::string& field, const std::string& text,
               std::uint8_t& target) {
    auto code = parseNumber<std::uint8_t>(text);
    if (!code) code = codeOfType(module.kind, text);
    if (module.kind == ModuleKind::peq) {
        if (!code || !peqTypeFromRaw(*code)) refuse(field + " aceita " + peqTypeList());
    } else if (!code || std::ranges::none_of(FilterMath::slopes,
                                             [&](const auto& slope) { return slope.code == *code; }))
        refuse(field + " aceita " + slopeList());
    target = *code;
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

std::string settableKinds() {
    std::string list;
    for (const auto& entry : moduleKindNames)
        if (entry.kind != ModuleKind::vu) list += (list.empty() ? "" : ", ") + std::string(entry.name);
    return list;
}

std::string typeName(ModuleKind kind, std::uint8_t code) {
    if (kind != ModuleKind::peq) return FilterMath::slopeName(code);
    for (const auto& [type, name] : peqTypeNames)
        if (static_cast<std::uint8_t>(type) == code) return std::string(name);
    return "Tipo " + std::to_string(code);
}

ModuleRef parseModule(const std::string& text) {
    if (const auto number = parseNumber<std::uint8_t>(text)) {
        if (const auto ref = K7Q::module(*number)) return *ref;
        refuse("não há módulo " + text + "; os números vão de 1 a " + std::to_string(K7Q::modules().size()));
    }
    const std::string wanted = lowered(text);
    for (const ModuleRef& ref : K7Q::modules())
        if (lowered(labelOf(ref)) == wanted) return ref;
    const std::string ofKind = labelsOfKind(wanted.substr(0, wanted.find('/')));
    if (ofKind.empty()) refuse("não há módulo \"" + text + "\"; os tipos são " + settableKinds());
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
