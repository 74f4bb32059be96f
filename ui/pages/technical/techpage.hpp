#pragma once

#include <QString>

#include <array>

namespace Corvane {

/// A page of the technical mode.
struct TechPage {
    enum class Kind { main, limiter, input, crossover, output };

    Kind kind = Kind::main;
    int channel = 0;  // of input and output pages, from 0

    QString title() const;

    bool operator==(const TechPage&) const = default;

    /// In the order of the tabs.
    static const std::array<TechPage, 9> all;
};

inline constexpr std::array<TechPage, 9> TechPage::all{{
    {TechPage::Kind::main},
    {TechPage::Kind::limiter},
    {TechPage::Kind::input, 0},
    {TechPage::Kind::input, 1},
    {TechPage::Kind::crossover},
    {TechPage::Kind::output, 0},
    {TechPage::Kind::output, 1},
    {TechPage::Kind::output, 2},
    {TechPage::Kind::output, 3},
}};

}  // namespace Corvane
