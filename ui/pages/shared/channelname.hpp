#pragma once

#include <QString>

#include <string_view>

namespace Corvane {

/// The titles of the window in the letters of a sentence, for screen readers: "SAÍDA 1" is "Saída 1".
QString spoken(const QString& title);

/// What a channel is called: "Entrada 1", "Saída 3".
QString nameOf(std::string_view channel);

}  // namespace Corvane
