#include "tests/ui/kit/hand.hpp"
#include "ui/kit/fader.hpp"
#include "ui/kit/formats.hpp"
#include "ui/kit/knob.hpp"
#include "ui/kit/meterbars.hpp"
#include "ui/kit/panel.hpp"
#include "ui/kit/pillbutton.hpp"
#include "ui/kit/polar.hpp"
#include "ui/kit/symbols.hpp"
#include "ui/kit/text.hpp"

#include <gtest/gtest.h>

#include <QDir>

namespace {

/// What `draw` draws on a transparent square.
QImage drawn(int size, const Paint::Drawing& draw) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
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
        const QImage image = drawn(48, [&file](QPainter& painter) {
            Symbols::draw(painter, file.chopped(4), {0, 0, 48, 48}, QColor(255, 0, 0));
        });
        const auto [first, last] = columns(image);
        EXPECT_GT(last - first, 15) << file.toStdString();
        EXPECT_LE(Hand::opacityAtBorder(image), 8) << file.toStdString() << " is cut off";
        EXPECT_FALSE(image.allGray()) << file.toStdString();
    }
}

TEST(PaintTest, DigitsStandStillAndTextIsAlignedAndElided) {
    Paint::TextStyle style{Theme::font(13, QFont::Normal, 4), Theme::text, {}, true};
    EXPECT_DOUBLE_EQ(Paint::textWidth("-11.1 dB", style), Paint::textWidth("-48.0 dB", style));
    style.tabularDigits = false;
    for (const QString& text : {QStringLiteral("HH"), QString(40, u'W')}) {
        const QImage image = drawn(80, [&](QPainter& painter) {
            Paint::text(painter, {10, 0, 60, 20}, Qt::AlignRight, text, style);
        });
        EXPECT_NEAR(columns(image).second, 69, 2) << text.toStdString();
    }
}

// One that lies an eighth of a pixel off is not the same from both sides within its pixels.
TEST(PaintTest, AShadowThatIsMirroredLooksLikeOneThatIsNot) {
    for (const int side : {12, 13}) {
        const auto shadow = [side](double off) {
            return drawn(100, [=](QPainter& painter) {
                Paint::dropShadow(painter, QRectF(30 + off, 30 + off, side, side), 8, {Qt::black, 8});
            });
        };
        const QImage mirrored = shadow(0);
        const QImage other = shadow(0.125);
        for (int y = 0; y < mirrored.height(); ++y)
            for (int x = 0; x < mirrored.width(); ++x)
                ASSERT_NEAR(qAlpha(mirrored.pixel(x, y)), qAlpha(other.pixel(x, y)), 4) << x << ", " << y;
    }
}

/// The most by which the middle half of a line within `inner` stands out against both lines beside it.
double seam(const QImage& image, const QRect& inner, Qt::Orientation lines) {
    const bool across = lines == Qt::Horizontal;
    const auto level = [&](int line) {
        const int from = across ? inner.left() + inner.width() / 4 : inner.top() + inner.height() / 4;
        const int count = std::max((across ? inner.width() : inner.height()) / 2, 1);
        double sum = 0;
        for (int i = from; i < from + count; ++i)
            sum += qGray(across ? image.pixel(i, line) : image.pixel(line, i));
        return sum / count;
    };
    double most = 0;
    const int last = across ? inner.bottom() : inner.right();
    for (int line = (across ? inner.top() : inner.left()) + 1; line < last; ++line) {
        const double before = level(line) - level(line - 1);
        const double after = level(line) - level(line + 1);
        if (before * after > 0) most = std::max(most, std::min(std::abs(before), std::abs(after)));
    }
    return most;
}

TEST(PaintTest, NoSeamsShowWithinAShapeAtAnyRatio) {
    const auto drawAt = [](QPainter& painter, const QRect& place, QWidget& control) {
        control.resize(place.size());
        control.render(&painter, place.topLeft(), {}, QWidget::DrawChildren);
    };
    const std::tuple<const char*, QSize, std::function<void(QPainter&, QRect)>> shapes[] = {
        {"well", {133, 67}, [](QPainter& painter, QRect at) { Paint::well(painter, at, 13); }},
        {"panel",
         {191, 123},
         [&](QPainter& painter, QRect at) {
             Kit::Surface surface;
             drawAt(painter, at, *new Kit::Panel({}, &surface));
         }},
        {"card", {191, 123}, [](QPainter& painter, QRect at) { Kit::Panel::drawShadows(painter, at); }},
        {"key",
         {117, 41},
         [&](QPainter& painter, QRect at) {
             Kit::PillButton key({}, Kit::PillButton::Size::regular, nullptr);
             key.setOn(true);
             drawAt(painter, at, key);
         }},
        {"bar", {15, 143}, [&](QPainter& painter, QRect at) {
             QWidget parent;
             Kit::MeterBars bars(
                 {""}, {5, 0}, [](QPainter& ground) { ground.fillRect(0, 0, 99, 999, Theme::panelTop); },
                 &parent);
             bars.setLevels({4});
             drawAt(painter, at, bars);
         }}};
    for (const auto& [name, size, draw] : shapes)
        for (const double ratio : {1.0, 1.25, 1.5, 1.75, 2.0, 3.0})
            for (const QPoint at : {QPoint(70, 60), {71, 63}, {73, 66}}) {
                QImage image(1200, 900, QImage::Format_RGB32);
                image.fill(Theme::panelTop);
                QPainter painter(&image);
                painter.setRenderHint(QPainter::Antialiasing);
                painter.scale(ratio, ratio);
                draw(painter, QRect(at, size));
                painter.end();
                const QRectF inner = QRectF(at, size).adjusted(7, 13, -7, -13);
                const QRect pixels(inner.topLeft().toPoint() * ratio, (inner.size() * ratio).toSize());
                for (const Qt::Orientation lines : {Qt::Horizontal, Qt::Vertical})
                    EXPECT_LE(seam(image, pixels, lines), 2)
                        << name << " at " << ratio << ", " << at.x() << ", lines " << lines;
            }
}

constexpr double dialSize = 200;

Kit::Knob dial(bool bipolar, double value, const QString& leftLabel = {}, const QString& rightLabel = {}) {
    return {
        "Graves", {-12, 12}, value, 0.5, Formats::signedDecibels, {dialSize, bipolar, leftLabel, rightLabel},
        nullptr};
}

QColor colorAt(Kit::Knob& dial, double radius, double angle) {
    const QPointF centre(dial.width() / 2.0, 2 + dialSize / 2);
    return Hand::colorAt(dial, Kit::onCircle(centre, radius * dialSize / 2, angle));
}

// In each case a place is given by its radius and its angle, which lies between two ticks.
TEST(KnobTest, ThePointerAndTheArcShowTheValue) {
    const struct {
        bool bipolar;
        double value;
        std::vector<QPointF> lit, unlit;
    } cases[] = {{false, 6, {{0.4, 67.5}, {0.74, -118}, {0.74, 58}}, {{0.4, 158}, {0.74, 85}, {0.74, 155}}},
                 {true, 6, {{0.4, 67.5}, {0.74, 17}, {0.74, 58}}, {{0.74, -17}, {0.74, 85}}},
                 {true, 0, {{0.4, 0}}, {{0.4, 90}, {0.74, -17}, {0.74, 17}}},
                 {true, -12, {{0.4, -135}, {0.74, -118}, {0.74, -17}}, {{0.74, 17}, {0.74, -155}}}};
    for (const auto& c : cases) {
        Kit::Knob knob = dial(c.bipolar, c.value);
        for (const QPointF& place : c.lit)
            EXPECT_GT(colorAt(knob, place.x(), place.y()).red(), 200) << c.value << " at " << place.y();
        for (const QPointF& place : c.unlit)
            EXPECT_LT(colorAt(knob, place.x(), place.y()).red(), 150) << c.value << " at " << place.y();
    }
}

TEST(KnobTest, HasALabelAtEachEndAndACaption) {
    Kit::Knob bare = dial(false, -12);
    const QImage picture = Hand::picture(bare);
    const QRect left(0, 0, bare.width() / 2, bare.height());
    Kit::Knob leftLabelled = dial(false, -12, "-12");
    Kit::Knob rightLabelled = dial(false, -12, "", "+12");
    EXPECT_NE(Hand::picture(leftLabelled).copy(left), picture.copy(left));
    EXPECT_EQ(Hand::picture(rightLabelled).copy(left), picture.copy(left));
    EXPECT_NE(Hand::picture(rightLabelled), picture);
    bare.setTitle("85.8 cm");
    EXPECT_NE(Hand::picture(bare), picture);
}

TEST(FaderTest, TheCapTravelsTheTrackAndTheLabelsStandOnTheirSide) {
    for (const bool below : {false, true})
        for (const auto& [value, grip] : {std::pair(6.0, 15), {-27.0, 115}, {-60.0, 215}}) {
            Kit::Fader fader("Entrada", {-60, 6}, value, Formats::decibels, {230, 0, below}, nullptr);
            fader.resize(fader.sizeHint());
            const double top = below ? 0 : fader.height() - 230;
            const QPointF cap(fader.width() / 2.0, top + grip);
            EXPECT_GT(Hand::colorAt(fader, cap).lightness(), 200) << value;
        }
}

TEST(FocusTest, ARingSurroundsAControlWhoseFocusCameByTheKeyboard) {
    QWidget window;
    QWidget row(&window);
    Kit::PillButton button("MUDO", Kit::PillButton::Size::regular, &row);
    row.setGeometry(10, 10, 150, 60);
    button.setGeometry(10, 10, 100, 44);
    Hand::showActive(window);
    button.clearFocus();
    const QImage resting = Hand::picture(window);
    const auto isRingedAt = [&window](int x) { return Hand::colorAt(window, {x - 2.5, 42}).alphaF() > 0.5; };
    const std::pair<Qt::FocusReason, bool> cases[] = {
        {Qt::MouseFocusReason, false}, {Qt::TabFocusReason, true}, {Qt::ActiveWindowFocusReason, true}};
    for (const auto& [reason, ring] : cases) {
        button.setFocus(reason);
        EXPECT_EQ(isRingedAt(20), ring) << reason;
        button.clearFocus();
    }
    EXPECT_EQ(Hand::picture(window), resting);
    button.setFocus(Qt::TabFocusReason);
    row.move(17, 10);
    EXPECT_TRUE(isRingedAt(27)) << "it follows";
}

}  // namespace
