#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace Corvane {

/// Text of the floors below, which is UTF-8, as the widgets want it, and back.
inline QString toQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
inline std::string toUtf8(const QString& text) { return text.toStdString(); }

}  // namespace Corvane
