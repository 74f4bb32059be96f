#include "app/corvaneapp.hpp"
#include "app/icon.hpp"
#include "app/snapshot.hpp"

#include <QApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

namespace {

constexpr int failed = 1;

std::string screenVariables() {
    std::string text;
    for (const char* const name : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"})
        if (qEnvironmentVariableIsSet(name))
            text += (text.empty() ? "" : ", ") + std::string(name) + "=" + qgetenv(name).toStdString();
    return text.empty() ? "DISPLAY e WAYLAND_DISPLAY não estão definidas" : text;
}

// QApplication calls abort() when no platform plugin can start, for example because no display
// answers. Right before, it reports a fatal message to this handler. Of the other messages only those
// of QT_DEBUG_PLUGINS are printed, so that the answer is one line.
void endWithoutScreen(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (type == QtFatalMsg) {
        std::fprintf(
            stderr, "corvane: não há tela para abrir a janela (%s)%s; QT_DEBUG_PLUGINS=1 mostra o motivo\n",
            screenVariables().c_str(),
            qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ? "; no Wayland é preciso o pacote qt6-wayland"
                                                         : "");
        std::_Exit(failed);
    }
    if (type == QtDebugMsg)
        std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, message)));
}

}  // namespace

int main(int argc, char** argv) {
    Cli::CommandLine commandLine("corvane", Corvane::purpose, Cli::Language::portuguese);
    Corvane::Options options;
    options.extraPort = qgetenv("CORVANE_PORT").toStdString();
    Corvane::addOptions(commandLine, options);
    if (const auto status = commandLine.parse(argc, argv)) return *status;

    QApplication::setApplicationName(QStringLiteral("corvane"));
    QApplication::setApplicationDisplayName(QStringLiteral("Corvane"));
    QApplication::setDesktopFileName(QStringLiteral("corvane"));
    // The toolkit multiplies it with the scale of the screen, so everything is drawn as sharp as ever.
    if (options.zoom != 1) {
        const double scale = std::max(qEnvironmentVariable("QT_SCALE_FACTOR").toDouble(), 1.0);
        qputenv("QT_SCALE_FACTOR", QByteArray::number(scale * options.zoom));
    }
    // The unattended mode draws without a screen.
    if (Corvane::Snapshot::isActive() && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    try {
        const QtMessageHandler usual = qInstallMessageHandler(endWithoutScreen);
        const QApplication application(argc, argv);
        qInstallMessageHandler(usual);
        QApplication::setWindowIcon(Corvane::icon());
        Corvane::CorvaneApp corvane(options);
        corvane.start();
        const int status = QApplication::exec();
        if (const std::string unsent = corvane.finish(); !unsent.empty()) commandLine.complain(unsent);
        return status;
    } catch (const std::exception& error) {
        commandLine.complain(error.what());
        return failed;
    }
}
