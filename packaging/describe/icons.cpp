#include "packaging/describe/icons.hpp"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <stdexcept>

namespace Describe {

namespace {

constexpr int sizes[] = {16, 22, 24, 32, 48, 64, 128, 256, 512};
constexpr int largestSmall = 32;  // up to here the drawing with fewer parts is the clearer one

[[noreturn]] void cannotWrite(const QString& path) {
    throw std::runtime_error("cannot write " + path.toStdString());
}

QString folderFor(const QString& share, const QString& size) {
    const QString folder = share + QStringLiteral("/icons/hicolor/%1/apps").arg(size);
    if (!QDir().mkpath(folder)) cannotWrite(folder);
    return folder;
}

void draw(const QString& drawing, int size, const QString& path) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    QSvgRenderer(drawing).render(&painter, QRectF(0, 0, size, size));
    painter.end();
    if (!image.save(path)) cannotWrite(path);
}

}  // namespace

void writeIcons(const QString& resources, const QString& share) {
    const QString large = resources + QStringLiteral("/icon/corvane.svg");
    const QString small = resources + QStringLiteral("/icon/corvane-small.svg");
    for (const int size : sizes)
        draw(size <= largestSmall ? small : large, size,
             folderFor(share, QStringLiteral("%1x%1").arg(size)) + QStringLiteral("/corvane.png"));
    const QString path = folderFor(share, QStringLiteral("scalable")) + QStringLiteral("/corvane.svg");
    QFile::remove(path);
    if (!QFile::copy(large, path)) cannotWrite(path);
}

}  // namespace Describe
