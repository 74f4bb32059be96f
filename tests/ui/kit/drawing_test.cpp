#include "tests/ui/kit/hand.hpp"
#include "ui/kit/caption.hpp"
#include "ui/kit/fader.hpp"
#include "ui/kit/formats.hpp"
#include "ui/kit/knob.hpp"
#include "ui/kit/panel.hpp"
#include "ui/kit/pillbutton.hpp"
#include "ui/kit/polar.hpp"
#include "ui/kit/symbols.hpp"
#include "ui/kit/text.hpp"

#include <gtest/gtest.h>

#include <QDir>

namespace {

/// What `draw` draws on a transparent square.
QImage drawn(int size, int ratio, const Paint::Drawing& draw) {
    QImage image(QSize(size, size) * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    draw(painter);
    return image;
}

/// The first and the last column in which something is drawn.
std::pair<int, int> columns(const QImage& image) {
    std::pair<int, int> ends{image.width(), -1};
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(image.pixel(x, y)) > 60) ends = {std::min(ends.first, x), std::max(ends.second, x)};
    return ends;
}

TEST(SymbolsTest, EachIsWholeAndTakesItsColour) {
    const QStringList files = QDir(":/symbols").entryList();
    ASSERT_FALSE(files.empty());
    for (const QString& file : files) {
        const QImage image = drawn(48, 1, [&file](QPainter& painter) {
            Symbols::draw(painter, file.chopped(4), {0, 0, 48, 48}, QColor(255, 0, 0));
        });
        const auto [first, last] = columns(image);
        EXPECT_GT(last - first, 15) << file.toStdString();
        EXPECT_LE(Hand::opacityAtBorder(image), 8) << file.toStdString() << " is cut off";
        EXPECT_FALSE(image.allGray()) << file.toStdString();
    }
}

// A line of one device pixel, drawn through the cache at places on and between pixels.
TEST(PaintTest, KeptPicturesAreAsSharpAsDirectOnes) {
    for (const int ratio : {1, 2})
        for (const double place : {0.0, 0.25, 0.5}) {
            const QImage image = drawn(20, ratio, [=](QPainter& painter) {
                Paint::cached(painter, QString::number(place), {place, 0, 18, 18}, [=](QPainter& canvas) {
                    canvas.fillRect(QRectF(5 - place, 2, 1.0 / ratio, 10), Qt::black);
                });
            });
            EXPECT_EQ(qAlpha(image.pixel(5 * ratio, 6 * ratio)), 255) << ratio << ' ' << place;
            EXPECT_EQ(qAlpha(image.pixel(5 * ratio - 1, 6 * ratio)), 0) << ratio << ' ' << place;
        }
}

TEST(PaintTest, ShadowsFadeOutOutsideAndDarkenTheEdgeInside) {
    for (const int ratio : {1, 2}) {
        const QImage outer = drawn(300, ratio, [](QPainter& painter) {
            Paint::dropShadow(painter, {80.5, 80, 140, 140}, 30, {Qt::black, 34, 0});
        });
        int steepest = 0;
        for (int x = 1; x < outer.width(); ++x)
            for (const int y : {150 * ratio, 90 * ratio})
                steepest =
                    std::max(steepest, qAbs(qAlpha(outer.pixel(x, y)) - qAlpha(outer.pixel(x - 1, y))));
        EXPECT_LE(steepest, 8) << ratio;
        EXPECT_GT(qAlpha(outer.pixel(150 * ratio, 150 * ratio)), 240);
        EXPECT_LE(Hand::opacityAtBorder(outer), 1);
    }
    const QImage inner = drawn(60, 1, [](QPainter& painter) {
        Paint::innerShadow(painter, {10, 10, 40, 40}, 4, {Qt::black, 6, 4});
    });
    EXPECT_GT(qAlpha(inner.pixel(30, 11)), 150) << "at the top";
    EXPECT_LT(qAlpha(inner.pixel(30, 48)), 60) << "at the bottom";
    EXPECT_EQ(qAlpha(inner.pixel(30, 8)), 0) << "outside";
}

TEST(PaintTest, TextIsAlignedElidedAndItsDigitsStandStill) {
    Paint::TextStyle style{Theme::font(13, QFont::Normal, 4), Theme::text, {}, true};
    EXPECT_DOUBLE_EQ(Paint::textWidth("-11.1 dB", style), Paint::textWidth("-48.0 dB", style));
    style.tabularDigits = false;
    const std::tuple<Qt::Alignment, QString, int, int> cases[] = {{Qt::AlignLeft, "HH", 10, 32},
                                                                  {Qt::AlignRight, "HH", 48, 69},
                                                                  {Qt::AlignCenter, "HH", 29, 50},
                                                                  {Qt::AlignLeft, QString(40, u'W'), 10, 67}};
    for (const auto& [alignment, text, left, right] : cases) {
        const auto [first, last] =
            columns(drawn(80, 1, [&, alignment = alignment, &text = text](QPainter& painter) {
                Paint::text(painter, {10, 0, 60, 20}, alignment, text, style);
            }));
        EXPECT_NEAR(first, left, 2) << text.toStdString();
        EXPECT_NEAR(last, right, 2) << text.toStdString();
    }
}

constexpr double dialSize = 200;

struct Dial : Kit::Knob {
    Dial(bool bipolar, double value, const QString& leftLabel = {}, const QString& rightLabel = {})
        : Knob("Graves", {-12, 12}, value, 0.5, Formats::signedDecibels,
               {dialSize, bipolar, leftLabel, rightLabel}, nullptr) {}

    QColor at(double radius, double angle) {
        const QPointF centre(width() / 2.0, 2 + dialSize / 2);
        return Hand::colorAt(*this, Kit::onCircle(centre, radius * dialSize / 2, angle));
    }
};

// The angles lie between two ticks.
TEST(KnobTest, TheArcReachesFromItsStartToThePointer) {
    const struct {
        bool bipolar;
        double value, pointer;
        std::vector<double> lit, unlit;
    } cases[] = {{false, -12, -135, {}, {-118, 17}},      {false, 12, 135, {-118, 118}, {155}},
                 {false, 6, 67.5, {-118, 58}, {85, 118}}, {true, 0, 0, {}, {-17, 17}},
                 {true, 6, 67.5, {17, 58}, {-17, 85}},    {true, -12, -135, {-118, -17}, {17, -155}},
                 {false, 99, 135, {118}, {155}}};
    for (const auto& c : cases) {
        Dial dial(c.bipolar, c.value);
        EXPECT_GT(dial.at(0.40, c.pointer).lightness(), 200) << c.value;
        EXPECT_LT(dial.at(0.40, c.pointer + 90).lightness(), 150) << c.value;
        for (const double angle : c.lit)
            EXPECT_EQ(dial.at(0.74, angle).rgb(), Theme::accent.rgb()) << c.value << " at " << angle;
        for (const double angle : c.unlit)
            EXPECT_LT(dial.at(0.74, angle).red(), 120) << c.value << " at " << angle;
    }
}

TEST(KnobTest, HasTicksOverTheSweepALabelAtEachEndAndACaption) {
    Dial dial(false, -12);
    constexpr double tick = 270.0 / 40;
    const std::tuple<double, double, bool> ticks[] = {{0.80, 0, true},        {0.80, 135, true},
                                                      {0.75, 5 * tick, true}, {0.75, tick, false},
                                                      {0.84, tick, true},     {0.84, 180, false}};
    for (const auto& [radius, angle, isTick] : ticks)
        EXPECT_EQ(dial.at(radius, angle).alpha() > 60, isTick) << radius << " at " << angle;
    const QImage bare = Hand::picture(dial);
    const QRect left(0, 0, dial.width() / 2, dial.height());
    for (const bool isLeft : {false, true}) {
        Dial labelled(false, -12, isLeft ? "-12" : "", isLeft ? "" : "+12");
        const QImage image = Hand::picture(labelled);
        EXPECT_EQ(image.copy(left) != bare.copy(left), isLeft);
        EXPECT_NE(image, bare);
    }
    dial.setTitle("85.8 cm");
    EXPECT_NE(Hand::picture(dial), bare);
    EXPECT_EQ(dial.accessibleName(), "Graves");
}

TEST(FaderTest, TheCapTravelsTheTrackAndTheLabelsStandOnTheirSide) {
    for (const bool below : {false, true})
        for (const auto& [value, grip] : {std::pair(6.0, 15), {-27.0, 115}, {-60.0, 215}}) {
            Kit::Fader fader("Entrada", {-60, 6}, value, Formats::decibels, {230, 0, below}, nullptr);
            fader.resize(fader.sizeHint());
            const double top = below ? 0 : fader.height() - 230;
            for (const int y : {15, 115, 215}) {
                const QColor color = Hand::colorAt(fader, {fader.width() / 2.0, top + y});
                EXPECT_EQ(color.lightness() > 200, y == grip) << value << " at " << y;
            }
        }
}

TEST(FocusTest, ARingShowsAFocusThatCameByTheKeyboard) {
    QWidget window;
    Kit::PillButton button("MUDO", Kit::PillButton::Size::regular, &window);
    Hand::showActive(window);
    button.clearFocus();
    const QImage resting = Hand::picture(button);
    const std::pair<Qt::FocusReason, bool> cases[] = {
        {Qt::MouseFocusReason, false}, {Qt::ActiveWindowFocusReason, false}, {Qt::TabFocusReason, true},
        {Qt::PopupFocusReason, true},  {Qt::ActiveWindowFocusReason, true},  {Qt::MouseFocusReason, false}};
    for (const auto& [reason, ring] : cases) {
        button.clearFocus();
        EXPECT_EQ(Hand::picture(button), resting);
        button.setFocus(reason);
        EXPECT_EQ(Hand::picture(button) != resting, ring) << reason;
    }
}

TEST(PanelTest, ItsShadowsFallOnTheSurface) {
    Kit::Surface surface;
    surface.resize(500, 500);
    Kit::Panel panel("TOM", &surface);
    panel.setGeometry(100, 100, 200, 200);
    Hand::showActive(surface);
    const auto shadow = [&](double x, double y) { return Hand::colorAt(surface, {x, y}).alpha(); };
    EXPECT_GT(shadow(200, 310), 80) << "below";
    EXPECT_GT(shadow(95, 250), 20) << "beside";
    EXPECT_LE(Hand::opacityAtBorder(Hand::picture(surface)), 2);
    panel.hide();
    EXPECT_EQ(shadow(200, 310), 0);
    EXPECT_LT(Kit::Panel({}, nullptr).sizeHint().height(), panel.sizeHint().height()) << "no title row";
}

TEST(CaptionTest, KeepsItsReservedWidthAndTakesItsColour) {
    Kit::Caption caption("Pronto", Theme::font(13), Theme::secondary, nullptr);
    caption.reserveFor("-88.8 dB");
    const QSize reserved = caption.sizeHint();
    caption.setText("Erro");
    EXPECT_EQ(caption.sizeHint(), reserved);
    caption.resize(reserved);
    caption.setColor(Theme::error);
    EXPECT_TRUE(Hand::shows(caption, Theme::error));
    caption.setText("Nenhuma caixa respondeu nesta porta");
    EXPECT_GT(caption.sizeHint().width(), reserved.width());
    EXPECT_LE(caption.minimumSizeHint().width(), reserved.width()) << "a longer text is elided";
    EXPECT_EQ(caption.accessibleName(), "Nenhuma caixa respondeu nesta porta");
}

}  // namespace
