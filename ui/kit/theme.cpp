#include "ui/kit/theme.hpp"

#include "ui/kit/fonts.hpp"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QScreen>

namespace Theme {

namespace {

// The toolkit takes sizes in pixels only as whole numbers.
constexpr double pointsPerInch = 72;

QFont sized(const QString& family, double size, QFont::Weight weight, double tracking) {
    QFont font(family);
    font.setPointSizeF(size * pointsPerInch / QGuiApplication::primaryScreen()->logicalDotsPerInchY());
    font.setWeight(weight);
    font.setLetterSpacing(QFont::AbsoluteSpacing, tracking);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

}  // namespace

QLinearGradient rim(const QRectF& bounds) {
    QLinearGradient gradient(bounds.topLeft(), bounds.bottomLeft());
    gradient.setColorAt(0, white(0.34));
    gradient.setColorAt(0.22, white(0.06));
    gradient.setColorAt(0.78, black(0.28));
    gradient.setColorAt(1, white(0.12));
    return gradient;
}

QLinearGradient recessRim(const QRectF& bounds) { return vertical(bounds, black(0.65), white(0.10)); }

QLinearGradient vertical(const QRectF& bounds, const QColor& top, const QColor& bottom) {
    QLinearGradient gradient(bounds.topLeft(), bounds.bottomLeft());
    gradient.setColorAt(0, top);
    gradient.setColorAt(1, bottom);
    return gradient;
}

QFont font(double size, QFont::Weight weight, double tracking) {
    static const QString family = textFamily();
    return sized(family, size, weight, tracking);
}

QFont grown(QFont font, double factor) {
    font.setPointSizeF(font.pointSizeF() * factor);
    font.setLetterSpacing(QFont::AbsoluteSpacing, font.letterSpacing() * factor);
    return font;
}

QFont titleFont(double size, double tracking) {
    // Some systems list the font by its own name, others by that of its family.
    static const QString installed = [] {
        for (const QString& name : {QStringLiteral("Varino-Bold-Regular"), QStringLiteral("Varino")})
            if (QFontDatabase::hasFamily(name)) return name;
        return QString();
    }();
    QFont font = sized(installed.isEmpty() ? textFamily() : installed, size, QFont::ExtraBold, tracking);
    if (installed.isEmpty()) font.setStretch(QFont::Expanded);
    return font;
}

}  // namespace Theme
