#include "app/corvaneapp.hpp"
#include "app/snapshot.hpp"

#include <QApplication>

#include <cstdio>
#include <exception>

int main(int argc, char** argv) {
    QApplication::setApplicationName(QStringLiteral("corvane"));
    QApplication::setApplicationDisplayName(QStringLiteral("Corvane"));
    QApplication::setApplicationVersion(QStringLiteral(CORVANE_VERSION));

    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    const Corvane::Options options = Corvane::parseOptions(arguments);
    if (options.answer) {
        std::fprintf(options.answer->status == 0 ? stdout : stderr, "%s\n",
                     options.answer->text.trimmed().toUtf8().constData());
        return options.answer->status;
    }
    // The unattended mode draws without a screen.
    if (Corvane::Snapshot::isActive() && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    try {
        const QApplication application(argc, argv);
        Corvane::CorvaneApp corvane(options);
        corvane.start();
        return QApplication::exec();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "corvane: %s\n", error.what());
        return 1;
    }
}
