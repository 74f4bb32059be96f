#pragma once

#include "Wendril/linerecord.hpp"
#include "Wendril/profile.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace Corvane {

/// Names in the user's words, as the window writes them.
std::string wordFor(Wendril::ModuleKind kind);          // "COMPRESSOR"
std::string wordFor(std::string_view channel);          // "SAÍDA 1", "ENTRADA 2", "ENTRADA 1 → SAÍDA 2"
std::string wordFor(const Wendril::ModuleRef& module);  // "PEQ 3, SAÍDA 1"

/// "caixa 02"; "3 caixas" for more than one.
std::string wordFor(const std::vector<std::uint8_t>& addresses);

/// What a frame says: "Pergunta: PEQ 3, SAÍDA 1".
std::string meaningOf(const Wendril::LineRecord::Entry& entry);

}  // namespace Corvane
