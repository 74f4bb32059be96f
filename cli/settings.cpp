#include "cli/settings.hpp"

#include "cli/commands.hpp"
#include "cli/modules.hpp"
#include "cli/output.hpp"

#include "Wendril/fields.hpp"
#include "Wendril/text.hpp"

#include <cstdio>
#include <stdexcept>

#include <unistd.h>

namespace Cli {

using namespace Wendril;

namespace {

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

// A progress line that overwrites itself and is erased at the end. Standard error must be a
// terminal, else nothing is printed.
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
    std::vector<ModuleRef> modules;
    for (const std::string& text : texts) {
        modules.push_back(parseModule(text));
        if (modules.back().kind == ModuleKind::vu)
            throw std::invalid_argument(labelOf(modules.back()) + " é um medidor; use o comando meters");
    }
    return modules;
}

Task<ModuleValue> change(K7QClient client, std::uint8_t address, ModuleRef module,
                         std::vector<Change> changes) {
    ModuleValue value = co_await client.read(address, module);
    for (const Change& apply : changes)
        apply(value);
    co_await client.write(address, module, value);
    co_return value;
}

}  // namespace

Task<ModuleValues> readEach(K7QClient client, std::uint8_t address, std::vector<ModuleRef> modules) {
    ModuleValues values;
    for (const ModuleRef& module : modules)
        values.insert_or_assign(module.index, co_await client.read(address, module));
    co_return values;
}

void readModules(const Session& session, std::uint8_t address, const std::vector<std::string>& modules) {
    const auto parsed = parseModules(modules);
    Link link(session.endpoint, session.verbose);
    ModuleValues values;
    if (parsed.empty()) {
        ProgressLine line(address);
        values = link.run(link.client().readAll(address, [&line](double fraction) { line.show(fraction); }));
    } else {
        values = link.run(readEach(link.client(), address, parsed));
    }
    printValues(session, values);
}

void writeModule(const Session& session, std::uint8_t address, const std::string& module,
                 const std::vector<std::string>& assignments) {
    const ModuleRef parsed = parseModule(module);
    std::vector<Change> changes;
    for (const std::string& assignment : assignments)
        changes.push_back(parseChange(parsed, assignment));
    Link link(session.endpoint, session.verbose);
    const ModuleValue written = link.run(change(link.client(), address, parsed, changes));
    printValues(session, {{parsed.index, written}});
}

}  // namespace Cli
