// Draws every control of the kit, in its states, to PNG files at the ratios 1 and 2.

#include "ui/kit/analogvu.hpp"
#include "ui/kit/backdrop.hpp"
#include "ui/kit/fader.hpp"
#include "ui/kit/formats.hpp"
#include "ui/kit/iconbutton.hpp"
#include "ui/kit/knob.hpp"
#include "ui/kit/lamp.hpp"
#include "ui/kit/outputmeters.hpp"
#include "ui/kit/panel.hpp"
#include "ui/kit/pillbutton.hpp"
#include "ui/kit/scrubfield.hpp"
#include "ui/kit/symbols.hpp"
#include "ui/kit/theme.hpp"
#include "ui/kit/wellmenu.hpp"

#include <QApplication>
#include <QDir>
#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

const QStringList symbols{
    u"minus"_s,
    u"mic"_s,
    u"music.note"_s,
    u"sparkles"_s,
    u"music.mic"_s,
    u"chevron.down"_s,
    u"xmark"_s,
    u"arrow.clockwise"_s,
    u"cable.connector"_s,
    u"cable.connector.horizontal"_s,
    u"dot.radiowaves.left.and.right"_s,
    u"bolt.horizontal"_s,
    u"speaker.slash.fill"_s,
    u"speaker.wave.2.fill"_s,
};

class Sheet : public Kit::Surface {
public:
    explicit Sheet(QSize size)
        : Kit::Surface(nullptr) {
        resize(size);
    }

    std::function<void(QPainter&)> drawing;

protected:
    void paintEvent(QPaintEvent* event) override {
        QPainter painter(this);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        Kit::drawBackdrop(painter, rect());
        if (drawing) drawing(painter);
        painter.end();
        Kit::Surface::paintEvent(event);
    }
};

void drawSymbols(QPainter& painter) {
    double y = 20;
    for (const double size : {13.0, 15.0, 22.0, 34.0, 64.0}) {
        double x = 20;
        for (const QString& name : symbols) {
            Symbols::draw(painter, name, {x, y, size, size}, Theme::text);
            x += std::max(size * 1.5, 30.0);
        }
        y += size + 20;
    }
    for (const double height : {42.0, 160.0}) {
        const QRectF place(height == 42.0 ? 20 : 120, y, height * Symbols::logoAspect(), height);
        Symbols::drawLogo(painter, place,
                          Theme::vertical({{}, place.size()}, Theme::rgb(1.0, 0.647, 0.322),
                                          Theme::rgb(0.871, 0.373, 0.102)));
    }
}

void save(Sheet& sheet, const QString& name) {
    sheet.show();
    QTest::qWait(250);
    for (const int ratio : {1, 2}) {
        QImage image(sheet.size() * ratio, QImage::Format_RGB32);
        image.setDevicePixelRatio(ratio);
        sheet.render(&image);
        image.save(u"%1@%2.png"_s.arg(name).arg(ratio));
    }
}

}  // namespace

int main(int count, char** arguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(count, arguments);
    const QString folder = count > 1 ? QString::fromLocal8Bit(arguments[1]) : u"."_s;
    QDir().mkpath(folder);
    QDir::setCurrent(folder);
    {
        Sheet sheet({1500, 480});
        sheet.drawing = drawSymbols;
        save(sheet, u"symbols"_s);
    }
    return 0;
}
