#include "app/icon.hpp"

#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

namespace Corvane {

QIcon icon() {
    constexpr struct {
        int size;
        const char* drawing;
    } pictures[] = {
        {16, ":/icon/corvane-small.svg"},
        {32, ":/icon/corvane-small.svg"},
        {64, ":/icon/corvane.svg"},
        {256, ":/icon/corvane.svg"},
    };
    QIcon made;
    for (const auto& [size, drawing] : pictures) {
        QPixmap picture(size, size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        QSvgRenderer(QString::fromLatin1(drawing)).render(&painter, QRectF(0, 0, size, size));
        made.addPixmap(picture);
    }
    return made;
}

}  // namespace Corvane
