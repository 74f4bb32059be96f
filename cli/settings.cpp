#include "cli/settings.hpp"

#include "cli/commands.hpp"
#include "cli/insist.hpp"
#include "cli/modules.hpp"
#include "cli/output.hpp"
#include "cli/progress.hpp"

#include "Wendril/fields.hpp"
#include "Wendril/text.hpp"

#include <stdexcept>

namespace Cli {

using namespace Wendril;

namespace {

Answer answerOf(const ModuleValues& values) {
    Json list = Json::array();
    std::vector<Row> rows;
    for (const auto& [number, value] : values) {
        const std::string label = labelOf(K7Q::module(number).value());
        list.push_back({{"number", number}, {"module", label}, {"value", jsonOf(value)}});
        rows.push_back({std::to_string(number), label, fieldsText(value)});
    }
    return {list, table({"nº", "módulo", "valor"}, std::move(rows))};
}

std::vector<ModuleRef> parseModules(const std::vector<std::string>& texts) {
    std::vector<ModuleRef> modules;
    for (const std::string& text : texts) {
        modules.push_back(parseModule(text));
        if (modules.back().kind == ModuleKind::vu)
            throw std::invalid_argument(labelOf(modules.back()) + " é um medidor; use o comando meters");
    }
    return modules;
}

}  // namespace

Task<ModuleValues> readEach(K7QClient client, std::uint8_t address, std::vector<ModuleRef> modules) {
    ModuleValues values;
    for (const ModuleRef& module : modules)
        values.insert_or_assign(module.index, co_await client.read(address, module));
    co_return values;
}

ModuleValues readAllModules(Session& session, std::uint8_t address) {
    ProgressLine line("Lendo a caixa " + twoDigits(address));
    Link& link = session.link();
    return link.run(link.client().readAll(address, [&line](double fraction) { line.show(fraction); }),
                    address);
}

void readModules(Session& session, const Addresses& addresses, const std::vector<std::string>& modules) {
    const auto parsed = parseModules(modules);
    session.forEach(addresses, [&](std::uint8_t address) {
        Link& link = session.link();
        return answerOf(parsed.empty() ? readAllModules(session, address)
                                       : link.run(readEach(link.client(), address, parsed), address));
    });
}

void writeModule(Session& session, const Addresses& addresses, const std::string& module,
                 const std::vector<std::string>& assignments) {
    const ModuleRef parsed = parseModule(module);
    std::vector<Change> changes;
    for (const std::string& assignment : assignments)
        changes.push_back(parseChange(parsed, assignment));
    session.forEach(addresses, [&](std::uint8_t address) {
        ModuleValue value = readModule(session, address, parsed);
        for (const Change& apply : changes)
            apply(value);
        writeAndCompare(session, address, parsed, value);
        return answerOf({{parsed.index, value}});
    });
}

}  // namespace Cli
