// What a person types: words of the command line, addresses, numbers.
#include "fuzz/check.hpp"

#include "Wendril/bridgeaddress.hpp"
#include "cli/modules.hpp"
#include "cli/numbers.hpp"
#include "cli/session.hpp"
#include "ui/kit/numbereditor.hpp"

#include <cmath>
#include <stdexcept>
#include <string>

using namespace Wendril;

namespace {

template <class Read>
void read(Read attempt) {
    try {
        attempt();
    } catch (const std::invalid_argument& error) {
        Fuzz::check(*error.what() != 0);
    }
}

void readModule(const std::string& text) {
    const auto blank = text.find(' ');
    const ModuleRef module = Cli::parseModule(text.substr(0, blank));
    Fuzz::check(K7Q::module(module.index) == module);
    if (blank == text.npos || module.kind == ModuleKind::vu) return;
    const Cli::Change change = Cli::parseChange(module, text.substr(blank + 1));
    ModuleValue value = ModuleValue::factory(module).value();
    change(value);
    Fuzz::check(ModuleValue::decode(module.kind, value.encoded()) == value);
}

void readAddresses(const std::string& text) {
    for (const std::uint8_t address : Cli::Addresses::parse(text).named)
        Fuzz::check(address >= 1 && address < 255);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    read([&] { readModule(text); });
    read([&] { readAddresses(text); });
    read([&] { Fuzz::check(!BridgeAddress::parse(text).host.empty()); });
    if (const auto number = Cli::parseNumber(text, -60.0, 6.0)) Fuzz::check(*number >= -60 && *number <= 6);
    if (const auto number = Kit::NumberEditor::parse(QString::fromStdString(text)))
        Fuzz::check(std::isfinite(*number));
    return 0;
}
