#include "ui/pages/shell/manual.hpp"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>

namespace Corvane {

// Beside the installed program, or in the build tree.
void openManual(AppModel& model) {
    for (const char* const share : {"/../share", "/../packaging/share"}) {
        const QFileInfo page(QCoreApplication::applicationDirPath() + QLatin1String(share) +
                             QStringLiteral("/doc/corvane/manual.pt-BR.html"));
        if (!page.isFile()) continue;
        const QString path = page.canonicalFilePath();
        if (!QDesktopServices::openUrl(QUrl::fromLocalFile(path)))
            model.warn("O manual não pôde ser aberto: " + path.toStdString());
        return;
    }
    model.warn("O manual não está instalado");
}

}  // namespace Corvane
