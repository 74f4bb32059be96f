#include "cli/showfile.hpp"

#include "cli/file.hpp"
#include "cli/json.hpp"
#include "cli/numbers.hpp"

#include "Wendril/fields.hpp"
#include "Wendril/filtermath.hpp"
#include "Wendril/limits.hpp"
#include "Wendril/text.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>
#include <stdexcept>
#include <type_traits>

namespace Cli {

using namespace Wendril;

namespace {

constexpr const char* formatName = "corvane-show";
constexpr int deepestNesting = 8;

[[noreturn]] void refuse(const std::string& text) {
    throw std::runtime_error("o arquivo do show não serve: " + text);
}

// The member of an object, which must be of that type.
const Json& member(const Json& object, const char* name, bool (Json::*isType)() const noexcept,
                   std::string_view where) {
    const auto found = object.find(name);
    const std::string which = "\"" + std::string(name) + "\" em " + std::string(where);
    if (found == object.end()) refuse("falta " + which);
    if (!((*found).*isType)()) refuse(which + " tem o tipo errado");
    return *found;
}

[[noreturn]] void refuseName(const std::string& name, const std::string& where) {
    refuse("\"" + name + "\" não se conhece em " + where);
}

void allowOnly(const Json& object, std::initializer_list<std::string_view> names, const std::string& where) {
    for (const auto& [name, value] : object.items())
        if (std::ranges::find(names, name) == names.end()) refuseName(name, where);
}

std::uint32_t wholeNumber(const Json& json, std::uint32_t lowest, std::uint32_t highest,
                          const std::string& where) {
    if (!json.is_number_unsigned() || json.get<std::uint64_t>() < lowest ||
        json.get<std::uint64_t>() > highest)
        refuse(where + " vai de " + std::to_string(lowest) + " a " + std::to_string(highest) +
               ", em números inteiros");
    return json.get<std::uint32_t>();
}

// A float that is not finite is written as null.
void parseField(const Json& json, const std::string& where, float& field) {
    field = std::numeric_limits<float>::quiet_NaN();
    if (json.is_null()) return;
    if (!json.is_number()) refuse(where + " precisa de um número");
    const double number = json.get<double>();
    if (std::abs(number) > std::numeric_limits<float>::max()) refuse(where + " é grande demais");
    field = static_cast<float>(number);
}

void parseField(const Json& json, const std::string& where, std::uint32_t& field) {
    field = wholeNumber(json, 0, UINT32_MAX, where);
}

void parseField(const Json& json, const std::string& where, std::uint8_t& field) {
    field = static_cast<std::uint8_t>(wholeNumber(json, 0, UINT8_MAX, where));
}

void parseField(const Json& json, const std::string& where, bool& field) {
    if (!json.is_boolean()) refuse(where + " aceita true ou false");
    field = json.get<bool>();
}

ModuleValue parseValue(const ModuleRef& module, const Json& json, const std::string& speaker) {
    const std::string where = labelOf(module) + " da " + speaker;
    if (!json.is_object()) refuse(where + " precisa de um objeto");
    ModuleValue value = ModuleValue::factory(module).value();
    std::size_t fields = 0;
    forEachField(value, [&](const char* name, auto& field) {
        const auto found = json.find(name);
        if (found == json.end()) refuse("falta \"" + std::string(name) + "\" em " + where);
        parseField(*found, std::string(name) + " de " + where, field);
        ++fields;
    });
    if (json.size() != fields) refuse(where + " tem campos a mais");
    return value;
}

ModuleValues parseSettings(const Json& json, const std::string& speaker) {
    ModuleValues settings;
    for (const ModuleRef& module : K7Q::modules()) {
        if (module.kind == ModuleKind::vu) continue;
        const auto found = json.find(labelOf(module));
        if (found == json.end()) refuse("falta " + labelOf(module) + " da " + speaker);
        settings.emplace(module.index, parseValue(module, *found, speaker));
    }
    if (json.size() != settings.size()) refuse("a " + speaker + " tem módulos que não se conhecem");
    return settings;
}

std::map<std::uint32_t, std::string> parsePresets(const Json& json, const std::string& speaker) {
    std::map<std::uint32_t, std::string> presets;
    const std::string where = "presets da " + speaker;
    for (const Json& preset : json) {
        if (!preset.is_object()) refuse(where + ": precisa de objetos");
        allowOnly(preset, {"number", "name"}, where);
        const auto number =
            wholeNumber(member(preset, "number", &Json::is_number, where), 0, 31, "number em " + where);
        const auto name = member(preset, "name", &Json::is_string, where).get<std::string>();
        if (!presets.emplace(number, name).second)
            refuse("o preset " + std::to_string(number) + " da " + speaker + " está repetido");
    }
    return presets;
}

ShowSpeaker parseSpeaker(const Json& json) {
    if (!json.is_object()) refuse("speakers precisa de objetos");
    const auto address = static_cast<std::uint8_t>(
        wholeNumber(member(json, "address", &Json::is_number, "speakers"), 1, 254, "address"));
    const std::string where = "caixa " + twoDigits(address);
    allowOnly(json, {"address", "product", "model", "version", "date", "serial", "settings", "presets"},
              where);
    const auto text = [&](const char* name) {
        return member(json, name, &Json::is_string, where).get<std::string>();
    };
    ShowSpeaker speaker;
    speaker.info = {static_cast<std::uint8_t>(
                        wholeNumber(member(json, "product", &Json::is_number, where), 0, 255, "product")),
                    address,
                    text("model"),
                    text("version"),
                    text("date"),
                    text("serial")};
    speaker.settings = parseSettings(member(json, "settings", &Json::is_object, where), where);
    speaker.presets = parsePresets(member(json, "presets", &Json::is_array, where), where);
    return speaker;
}

Json parseJson(std::string_view text) {
    try {
        return Json::parse(text, [](int depth, Json::parse_event_t, Json&) {
            if (depth > deepestNesting) refuse("há objetos demais um dentro do outro");
            return true;
        });
    } catch (const Json::exception& error) {
        // "[json.exception.parse_error.101] parse error at line 1, column 2: ..."
        const std::string what = error.what();
        const std::size_t from = what.find("at line");
        refuse("não é JSON" +
               (from == what.npos ? "" : " (" + what.substr(from, what.find(':', from) - from) + ")"));
    }
}

// Why a field does not take a value; empty for one that it does.
template <class Field>
std::string faultOf(const ModuleRef& module, std::string_view name, const Field& field) {
    if constexpr (isLimited<Field>) {
        const Limits limits = limitsOf(module.kind, name, module.channel);
        if (!(field >= limits.lowest && field <= limits.highest))
            return "vai de " + numberText(limits.lowest) + " a " + numberText(limits.highest);
        const bool isTime = limits.step == 0;
        if (isTime && field != 0 && K7Q::nearestTime(field) != field) return "não é um tempo da placa";
    } else if constexpr (std::is_same_v<Field, std::uint8_t>) {
        const bool isKnown = module.kind == ModuleKind::peq
                                 ? peqTypeFromRaw(field).has_value()
                                 : std::ranges::any_of(FilterMath::slopes, [&](const auto& slope) {
                                       return slope.code == field;
                                   });
        if (!isKnown) return "não é um tipo conhecido";
    }
    return "";
}

}  // namespace

std::string Show::text() const {
    Json list = Json::array();
    for (const ShowSpeaker& speaker : speakers) {
        Json json = jsonOf(speaker.info);
        Json& settings = json["settings"] = Json::object();
        for (const auto& [index, value] : speaker.settings)
            settings[labelOf(K7Q::module(index).value())] = jsonOf(value);
        Json& presets = json["presets"] = Json::array();
        for (const auto& [number, name] : speaker.presets)
            presets.push_back({{"number", number}, {"name", name}});
        list.push_back(std::move(json));
    }
    return textOf(Json{{"format", formatName}, {"version", version}, {"speakers", std::move(list)}}, 2) +
           "\n";
}

Show Show::parse(std::string_view text) {
    const Json json = parseJson(text);
    if (!json.is_object() || json.value("format", Json()) != formatName)
        refuse("não traz \"format\": \"" + std::string(formatName) + "\"");
    if (json.value("version", Json()) != version)
        refuse("a versão é " + json.value("version", Json()).dump() + "; este programa lê a " +
               std::to_string(version));
    allowOnly(json, {"format", "version", "speakers"}, "arquivo");
    Show show;
    std::set<std::uint8_t> addresses;
    std::set<std::string> serials;
    for (const Json& entry : member(json, "speakers", &Json::is_array, "arquivo")) {
        ShowSpeaker speaker = parseSpeaker(entry);
        if (!addresses.insert(speaker.info.address).second || !serials.insert(speaker.info.serial).second)
            refuse("a caixa " + twoDigits(speaker.info.address) + " está repetida");
        show.speakers.push_back(std::move(speaker));
    }
    return show;
}

Show Show::read(const std::string& path) { return parse(readFile(path)); }

void checkLimits(const Show& show) {
    for (const ShowSpeaker& speaker : show.speakers)
        for (const auto& [index, value] : speaker.settings) {
            const ModuleRef module = K7Q::module(index).value();
            forEachField(value, [&](const char* name, const auto& field) {
                const std::string fault = faultOf(module, name, field);
                if (!fault.empty())
                    refuse(std::string(name) + " de " + labelOf(module) + " da caixa " +
                           twoDigits(speaker.info.address) + " " + fault);
            });
        }
}

}  // namespace Cli
