#pragma once

#include "packaging/describe/command.hpp"

namespace Describe {

/// Completion scripts of a program: its commands and options where each may stand, files and serial
/// ports as the values of those that take them.
std::string bashCompletion(const Command& program);
std::string zshCompletion(const Command& program);
std::string fishCompletion(const Command& program);

}  // namespace Describe
