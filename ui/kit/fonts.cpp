#include "ui/kit/fonts.hpp"

#include <QDir>
#include <QFontDatabase>
#include <QResource>

// The macro must stand outside of all namespaces.
static void initialiseFonts() { Q_INIT_RESOURCE(fonts); }

namespace Theme {

QString textFamily() {
    const QString family = QStringLiteral("Inter");
    if (QFontDatabase::hasFamily(family)) return family;
    initialiseFonts();
    const QDir folder(QStringLiteral(":/fonts"));
    for (const QString& file : folder.entryList({QStringLiteral("*.otf")})) {
        // The resource is not compressed: the font is read where it lies, without a copy.
        const QResource font(folder.filePath(file));
        QFontDatabase::addApplicationFontFromData(
            QByteArray::fromRawData(reinterpret_cast<const char*>(font.data()), font.size()));
    }
    return family;
}

}  // namespace Theme
