#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace Corvane {

/// The library and the model hold text as UTF-8, widgets as QString.
inline QString toQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
inline std::string toUtf8(const QString& text) { return text.toStdString(); }

}  // namespace Corvane
