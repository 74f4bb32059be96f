#pragma once

#include "Wendril/profile.hpp"
#include "Wendril/values.hpp"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// Modules and their fields as a person types them. Anything else throws std::invalid_argument with
// a text that names what is allowed.
namespace Cli {

/// "GAIN/In0", "PEQ/Out2/4" (letters in any case) or a module number, 1 to 98.
Wendril::ModuleRef parseModule(const std::string& text);

/// "GAIN, PEQ, HPF …": the kinds that hold settings.
std::string settableKinds();

/// The name of the type or slope of an equaliser band or a crossover filter: "low shelf", "Bessel 12 dB".
std::string typeName(Wendril::ModuleKind kind, std::uint8_t code);

/// Changes one field of a value.
using Change = std::function<void(Wendril::ModuleValue& value)>;

/// "gain=-3,5": a field of that module and a value within its limits. Decimal point or comma.
Change parseChange(const Wendril::ModuleRef& module, const std::string& text);

}  // namespace Cli
