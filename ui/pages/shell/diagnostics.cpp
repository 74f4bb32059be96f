#include "ui/pages/shell/diagnostics.hpp"

#include "ui/pages/shared/text.hpp"

#include "Wendril/text.hpp"

#include <QCoreApplication>
#include <QDateTime>
#include <QStringList>

#include <algorithm>
#include <chrono>

namespace Corvane::Diagnostics {

using namespace Wendril;

namespace {

constexpr std::uint8_t everyone = 255;

QString timeText(std::chrono::system_clock::time_point at, const QString& format) {
    using std::chrono::milliseconds;
    const auto sinceEpoch = std::chrono::duration_cast<milliseconds>(at.time_since_epoch());
    return QDateTime::fromMSecsSinceEpoch(sinceEpoch.count()).toString(format);
}

QString nameOf(std::uint8_t address) {
    return address == everyone ? QStringLiteral("todas") : toQString(twoDigits(address));
}

std::uint8_t addressOf(const std::shared_ptr<Speaker>& speaker) { return speaker->address; }

QString msText(Duration time) {
    return QString::asprintf("%.1f", std::chrono::duration<double, std::milli>(time).count());
}

}  // namespace

QString statusText(const Status& status) {
    switch (status.state) {
    case Status::Case::working:
    case Status::Case::error:
        return toQString(status.text);
    case Status::Case::online:
        return QStringLiteral("Conectado a ") + toQString(status.text);
    case Status::Case::offline:
        break;
    }
    return QStringLiteral("Desconectado");
}

QString events(const AppModel& model) {
    QStringList lines;
    for (const EventLog::Event& event : model.events.all())
        lines << timeText(event.at, QStringLiteral("dd/MM HH:mm:ss  ")) + toQString(event.text);
    return lines.join(u'\n');
}

// Addresses that a scan has asked in vain say nothing.
QString counts(const AppModel& model, const LineReport& line) {
    const QStringList titles{QStringLiteral("caixa"),       QStringLiteral("enviados"),
                             QStringLiteral("reenviados"),  QStringLiteral("sem resposta"),
                             QStringLiteral("descartados"), QStringLiteral("maior (ms)"),
                             QStringLiteral("mediana (ms)")};
    constexpr qsizetype gap = 2;
    QStringList lines{titles.join(QString(gap, u' '))};
    for (const auto& [address, counts] : line.addresses) {
        const bool isListed =
            std::ranges::find(model.speakers.value(), address, addressOf) != model.speakers.value().end();
        const bool hasReplied = counts.longest > Duration::zero();
        if (!isListed && !hasReplied && address != everyone) continue;
        const QStringList cells{nameOf(address),
                                QString::number(counts.sent),
                                QString::number(counts.resent),
                                QString::number(counts.timedOut),
                                QString::number(counts.dropped),
                                msText(counts.longest),
                                msText(counts.median)};
        QStringList row;
        for (qsizetype i = 0; i < cells.size(); ++i)
            row << cells.at(i).rightJustified(titles.at(i).size());
        lines << row.join(QString(gap, u' '));
    }
    lines << QStringLiteral("Bytes inválidos: %1").arg(line.droppedBytes);
    return lines.join(u'\n');
}

QString frames(const LineReport& line) {
    QStringList lines;
    for (const LineReport::Frame& frame : line.frames)
        lines << timeText(frame.at, QStringLiteral("HH:mm:ss.zzz")) +
                     (frame.sent ? QStringLiteral("  → ") : QStringLiteral("  ← ")) +
                     nameOf(frame.address).leftJustified(7) + toQString(frame.meaning);
    return lines.join(u'\n');
}

QString everything(const AppModel& model) {
    const LineReport line = model.lineReport();
    QStringList lines{QStringLiteral("Corvane, ") + QDateTime::currentDateTime().toString(Qt::ISODate),
                      statusText(model.status.value())};
    for (const auto& speaker : model.speakers.value())
        lines << QStringLiteral("Caixa %1: %2")
                     .arg(nameOf(speaker->address), toQString(speaker->info.value().model));
    const std::pair<QString, QString> parts[] = {{QStringLiteral("Eventos"), events(model)},
                                                 {QStringLiteral("Linha"), counts(model, line)},
                                                 {QStringLiteral("Quadros"), frames(line)}};
    for (const auto& [title, text] : parts)
        lines << QString() << title << text;
    return lines.join(u'\n') + u'\n';
}

}  // namespace Corvane::Diagnostics
