#include "tests/ui/kit/hand.hpp"
#include "ui/kit/panel.hpp"
#include "ui/kit/pillbutton.hpp"
#include "ui/kit/symbols.hpp"
#include "ui/kit/text.hpp"

#include <gtest/gtest.h>

namespace {

QImage canvas(int size, int ratio) {
    QImage image(QSize(size, size) * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    return image;
}

int mostInk(const QImage& image) {
    int most = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            most = std::max(most, qAlpha(image.pixel(x, y)));
    return most;
}

TEST(SymbolsTest, AllAreThereWholeAndTakeTheirColour) {
    const char* const names[] = {
        "minus",
        "mic",
        "music.note",
        "sparkles",
        "music.mic",
        "chevron.down",
        "xmark",
        "arrow.clockwise",
        "cable.connector",
        "cable.connector.horizontal",
        "bolt.horizontal",
        "dot.radiowaves.left.and.right",
        "speaker.wave.2.fill",
        "speaker.slash.fill",
    };
    for (const char* const name : names) {
        QImage image = canvas(48, 1);
        QPainter painter(&image);
        Symbols::draw(painter, name, {0, 0, 48, 48}, QColor(255, 0, 0));
        painter.end();
        EXPECT_GT(mostInk(image), 200) << name;
        EXPECT_LE(Hand::inkAtBorder(image), 8) << name << " is cut off";
        EXPECT_EQ(qBlue(image.pixel(24, 24)) + qGreen(image.pixel(24, 24)), 0) << name;
    }
    EXPECT_GT(Symbols::logoAspect(), 0.5);
}

// One device pixel of a grid, through the cache and at places between two pixels.
TEST(PaintTest, KeptPicturesAreAsSharpAsDirectOnes) {
    for (const int ratio : {1, 2})
        for (const double place : {0.0, 0.25, 0.5}) {
            const auto line = [&](QPainter& ink, QPointF origin) {
                ink.fillRect(QRectF(origin + QPointF(5 - place, 2), QSizeF(1.0 / ratio, 10)), Qt::black);
            };
            QImage kept = canvas(20, ratio);
            QPainter painter(&kept);
            painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
            Paint::cached(painter, QString::number(place), {place, 0, 18, 18},
                          [&](QPainter& ink) { line(ink, {}); });
            painter.end();
            EXPECT_EQ(qAlpha(kept.pixel(5 * ratio, 6 * ratio)), 255) << ratio << ' ' << place;
            EXPECT_EQ(qAlpha(kept.pixel(5 * ratio - 1, 6 * ratio)), 0) << ratio << ' ' << place;
        }
}

TEST(PaintTest, AShadowFadesOutWithoutAnEdge) {
    for (const int ratio : {1, 2}) {
        QImage image = canvas(300, ratio);
        QPainter painter(&image);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        Paint::dropShadow(painter, {80.5, 80, 140, 140}, 30, {Qt::black, 34, 0});
        painter.end();
        int steepest = 0;
        for (int x = 1; x < image.width(); ++x)
            for (const int y : {150 * ratio, 90 * ratio})
                steepest =
                    std::max(steepest, std::abs(qAlpha(image.pixel(x, y)) - qAlpha(image.pixel(x - 1, y))));
        EXPECT_LE(steepest, 8) << ratio;
        EXPECT_GT(qAlpha(image.pixel(150 * ratio, 150 * ratio)), 240);
        EXPECT_LE(Hand::inkAtBorder(image), 1);
    }
}

TEST(PaintTest, LitKeysGlowInsideTheirBezelAlone) {
    Kit::PillButton key("MUDO", Kit::PillButton::Size::regular, nullptr);
    key.setOn(true);
    key.resize(key.sizeHint());
    const QImage image = Hand::picture(key, 2);
    EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0);
    EXPECT_EQ(qAlpha(image.pixel(4, 4)), 0);
}

TEST(PaintTest, ReadOutsDoNotJumpAndLongTextsAreElided) {
    Paint::TextStyle style{Theme::font(13), Theme::text, {}, true};
    EXPECT_DOUBLE_EQ(Paint::textWidth("-11.1 dB", style), Paint::textWidth("-48.0 dB", style));
    QImage image = canvas(60, 1);
    QPainter painter(&image);
    Paint::text(painter, {10, 0, 40, 20}, Qt::AlignLeft | Qt::AlignVCenter, QString(40, u'W'), style);
    painter.end();
    for (int y = 0; y < 60; ++y)
        EXPECT_EQ(qAlpha(image.pixel(52, y)), 0);
}

TEST(PanelTest, ItsShadowsFallOnTheSurface) {
    Kit::Surface surface;
    surface.resize(400, 400);
    Kit::Panel panel("TOM", &surface);
    panel.setGeometry(100, 100, 200, 200);
    Hand::showActive(surface);
    const QImage image = Hand::picture(surface, 1);
    EXPECT_GT(qAlpha(image.pixel(200, 310)), 80) << "below";
    EXPECT_GT(qAlpha(image.pixel(95, 250)), 20) << "beside";
    EXPECT_LE(Hand::inkAtBorder(image), 2);
}

}  // namespace
