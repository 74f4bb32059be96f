#include "app/options.hpp"

#include "app/demo.hpp"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QtGlobal>

namespace Corvane {

namespace {

// `--demo 4` as well as `--demo=4` and `--demo` alone, which Qt's parser has no notion of.
QStringList withDemoCount(QStringList arguments) {
    const qsizetype at = arguments.indexOf(QStringLiteral("--demo"));
    if (at < 0) return arguments;
    bool counts = false;
    if (at + 1 < arguments.size()) arguments.at(at + 1).toInt(&counts);
    const QString speakers = counts ? arguments.takeAt(at + 1) : QString::number(Demo::usualSpeakers);
    arguments[at] = QStringLiteral("--demo=") + speakers;
    return arguments;
}

}  // namespace

Options parseOptions(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Encontra, ajusta e acompanha uma cadeia de caixas acústicas."));
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();
    const QCommandLineOption demo(
        QStringLiteral("demo"),
        QStringLiteral(
            "Oferece uma cadeia simulada de N caixas (1 a %1; %2 se N faltar) como primeira porta.")
            .arg(Demo::mostSpeakers)
            .arg(Demo::usualSpeakers),
        QStringLiteral("N"));
    parser.addOption(demo);

    Options options;
    options.extraPort = qgetenv("CORVANE_PORT").toStdString();
    const auto fail = [&options](const QString& why) {
        options.answer = {QStringLiteral("corvane: ") + why, 2};
        return options;
    };
    if (!parser.parse(withDemoCount(arguments))) return fail(parser.errorText());
    if (parser.isSet(help)) {
        options.answer = {parser.helpText(), 0};
        return options;
    }
    if (parser.isSet(version)) {
        options.answer = {QStringLiteral("corvane ") + QCoreApplication::applicationVersion(), 0};
        return options;
    }
    if (!parser.positionalArguments().isEmpty())
        return fail(QStringLiteral("argumento desconhecido: ") + parser.positionalArguments().constFirst());
    if (parser.isSet(demo)) {
        bool valid = false;
        const std::size_t speakers = parser.value(demo).toULongLong(&valid);
        if (!valid || speakers < 1 || speakers > Demo::mostSpeakers)
            return fail(QStringLiteral("--demo aceita de 1 a %1 caixas").arg(Demo::mostSpeakers));
        options.demoSpeakers = speakers;
    }
    return options;
}

}  // namespace Corvane
