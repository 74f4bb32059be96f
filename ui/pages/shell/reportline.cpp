#include "ui/pages/shell/reportline.hpp"

#include "ui/pages/shared/bind.hpp"
#include "ui/pages/shared/text.hpp"

#include "ui/kit/animation.hpp"
#include "ui/kit/shadows.hpp"
#include "ui/kit/text.hpp"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace Corvane {

namespace {

constexpr int lineHeight = 34;
constexpr int padding = 20;
constexpr int shadowRoom = 14;  // around the capsule
constexpr int footGap = 12;     // below the capsule
constexpr int shownMs = 2000;
constexpr int fadeMs = 250;

Paint::TextStyle textStyle() { return {Theme::font(13, QFont::Medium), Theme::text, {}, false}; }

}  // namespace

ReportLine::ReportLine(AppModel& model, QWidget* parent)
    : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    opacity.setDuration(shownMs + fadeMs);
    opacity.setStartValue(1.0);
    opacity.setKeyValueAt(static_cast<double>(shownMs) / (shownMs + fadeMs), 1.0);
    opacity.setEndValue(0.0);
    connect(&opacity, &QVariantAnimation::valueChanged, this, [this] { update(); });
    connect(&opacity, &QVariantAnimation::finished, this, [this] { hide(); });
    hide();
    Corvane::bind(
        *this, [&model] { return model.report.value(); },
        [this, before = model.report.value().number](const Report& report) {
            if (report.number != before) say(toQString(report.text));
        });
}

void ReportLine::say(const QString& said) {
    text = said;
    settle();
    raise();
    show();
    opacity.stop();
    opacity.start();
}

void ReportLine::settle() {
    const int wanted = static_cast<int>(std::ceil(Paint::textWidth(text, textStyle()))) + 2 * padding;
    const QSize capsule(std::min(wanted, parentWidget()->width() - 2 * padding), lineHeight);
    QRect place(QPoint(), capsule + QSize(2 * shadowRoom, 2 * shadowRoom));
    place.moveCenter(parentWidget()->rect().center());
    place.moveBottom(parentWidget()->height() - footGap + shadowRoom);
    setGeometry(place);
}

void ReportLine::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool fades = opacity.state() == QAbstractAnimation::Running && !Kit::Animation::isMotionReduced();
    painter.setOpacity(fades ? opacity.currentValue().toDouble() : 1);
    const QRectF capsule = QRectF(rect()).adjusted(shadowRoom, shadowRoom, -shadowRoom, -shadowRoom);
    const double radius = capsule.height() / 2;
    Paint::dropShadow(painter, capsule, radius, {Theme::black(0.6), 8, 3});
    Paint::fill(painter, capsule, radius, Theme::vertical(capsule, Theme::panelTop, Theme::panelBottom));
    Paint::edge(painter, capsule, radius, Theme::rim(capsule));
    Paint::text(painter, capsule.adjusted(padding, 0, -padding, 0), Qt::AlignCenter, text, textStyle());
}

}  // namespace Corvane
