#pragma once

#include <QString>

#include <array>

namespace Corvane {

/// A page of the simple mode, in the order of the tabs.
enum class Page { tone, dynamics, delay };

constexpr std::array<Page, 3> simplePages{Page::tone, Page::dynamics, Page::delay};

QString titleOf(Page page);

}  // namespace Corvane
