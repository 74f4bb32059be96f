#include "ui/pages/technical/eqclipboard.hpp"

#include "app/model/equaliser.hpp"
#include "ui/pages/technical/peqrow.hpp"

#include <QClipboard>
#include <QDataStream>
#include <QGuiApplication>
#include <QIODevice>
#include <QMimeData>
#include <QStringList>

#include <memory>

namespace Corvane::EQClipboard {

using namespace Wendril;

namespace {

constexpr auto streamVersion = QDataStream::Qt_6_0;

QString formatOf(Content content) {
    return content == Content::band ? QStringLiteral("application/x-corvane-band")
                                    : QStringLiteral("application/x-corvane-equaliser");
}

}  // namespace

void copy(Content content, const std::vector<PeqValue>& bands) {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(streamVersion);
    QStringList lines;
    for (const PeqValue& band : bands) {
        stream << band.fc << band.gain << band.q << band.type << band.bypass;
        lines << bandText(band);
    }
    auto data = std::make_unique<QMimeData>();
    data->setData(formatOf(content), bytes);
    data->setText(lines.join(u'\n'));
    QGuiApplication::clipboard()->setMimeData(data.release());
}

// Another program can have put anything there under that name.
std::vector<PeqValue> copied(Content content) {
    const QMimeData* const data = QGuiApplication::clipboard()->mimeData();
    if (!data) return {};
    const QByteArray bytes = data->data(formatOf(content));
    QDataStream stream(bytes);
    stream.setVersion(streamVersion);
    std::vector<PeqValue> bands;
    while (!stream.atEnd()) {
        PeqValue band;
        stream >> band.fc >> band.gain >> band.q >> band.type >> band.bypass;
        if (stream.status() != QDataStream::Ok) return {};
        bands.push_back(limited(band));
    }
    return bands;
}

}  // namespace Corvane::EQClipboard
