#pragma once

#include <QString>

namespace Describe {

/// The user's manual, a Markdown file, as one page of HTML that holds its pictures.
QString manualPage(const QString& markdownFile);

}  // namespace Describe
