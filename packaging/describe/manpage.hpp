#pragma once

#include "packaging/describe/command.hpp"

namespace Describe {

/// The words that a manual page adds to the program's own texts.
struct ManWords {
    const char* manual;
    const char* name;
    const char* synopsis;
    const char* options;
    const char* commands;
    const char* notes;
    const char* seeAlso;
};

extern const ManWords englishWords;
extern const ManWords portugueseWords;

/// The manual page of a program, in the language of its command line. `seeAlso` names other pages.
std::string manPage(const Command& program, const ManWords& words, const std::string& version,
                    const std::string& seeAlso);

}  // namespace Describe
