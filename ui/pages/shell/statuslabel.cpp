#include "ui/pages/shell/statuslabel.hpp"

#include "ui/pages/shared/bind.hpp"
#include "ui/pages/shared/text.hpp"

#include "ui/kit/caption.hpp"
#include "ui/kit/lamp.hpp"
#include "ui/kit/shadows.hpp"
#include "ui/kit/spinner.hpp"
#include "ui/kit/theme.hpp"

#include <QHBoxLayout>
#include <QPainter>

#include <algorithm>
#include <initializer_list>

namespace Corvane {

namespace {

constexpr double fontSize = 13;
constexpr int leastText = 120;
constexpr int leastNotice = 220;  // with sign and padding 260

class LitLamp final : public QWidget {
public:
    explicit LitLamp(QWidget* parent)
        : QWidget(parent) {
        constexpr int room = static_cast<int>(Kit::lampSize + 2 * Kit::lampGlow);
        setFixedSize(room, room);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        Kit::drawLamp(painter, rect(), Theme::good, true);
    }
};

constexpr int groundPadding = 11;
constexpr int groundHeight = 26;

// Shows a text of which at least its first `leastText` pixels stay to be seen.
void showText(Kit::Caption& caption, const QString& text) {
    caption.setText(text);
    caption.setMinimumWidth(std::min(caption.sizeHint().width(), leastText));
    caption.setVisible(!text.isEmpty());
}

}  // namespace

StatusLabel::StatusLabel(AppModel& model, QWidget* parent)
    : QWidget(parent)
    , spinner(new Kit::Spinner(this))
    , lamp(new LitLamp(this))
    , text(new Kit::Caption({}, Theme::font(fontSize), Theme::secondary, this))
    , error(new Warning(Warning::Kind::statement, Theme::error, leastText, this))
    , percentage(new Kit::Percentage(QStringLiteral("Leitura das caixas"), Theme::font(fontSize),
                                     Theme::secondary, this)) {
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    auto* const atWork = new Kit::Spinner(this);
    auto* const activity = new Kit::Caption({}, Theme::font(fontSize), Theme::secondary, this);
    auto* const notice = new Warning(Warning::Kind::dismissible, Theme::accent, leastNotice, this);
    notice->action = [&model] { model.notice = std::nullopt; };
    for (QWidget* const each :
         std::initializer_list<QWidget*>{spinner, lamp, text, error, percentage, atWork, activity, notice})
        row->addWidget(each);

    Corvane::bind(
        *this, [&model] { return model.status.value(); }, [this](const Status& status) { show(status); });
    Corvane::bind(
        *percentage,
        [&model] { return model.status.value().isWorking() ? model.progress.value() : std::nullopt; },
        [this](std::optional<double> progress) { percentage->setFraction(progress); });
    Corvane::bind(
        *activity, [&model] { return model.activity.value(); },
        [activity, atWork](const std::optional<std::string>& doing) {
            showText(*activity, toQString(doing.value_or(std::string())));
            atWork->setVisible(doing.has_value());
        });
    Corvane::bind(
        *notice, [&model] { return model.notice.value(); },
        [notice](const std::optional<std::string>& warning) {
            notice->setText(toQString(warning.value_or(std::string())));
        });
}

void StatusLabel::show(const Status& status) {
    const bool offline = status.state == Status::Case::offline;
    const bool failed = status.state == Status::Case::error;
    const QString line = offline ? QStringLiteral("Desconectado") : toQString(status.text);
    const int beside = failed ? 0 : groundPadding;
    layout()->setContentsMargins(beside, 0, beside, 0);
    spinner->setVisible(status.isWorking());
    lamp->setVisible(status.isOnline());
    showText(*text, failed ? QString() : line);
    error->setText(failed ? line : QString());
    setToolTip(line);
}

// The ground is as wide as what is shown.
bool StatusLabel::event(QEvent* event) {
    if (event->type() == QEvent::LayoutRequest) update();
    return QWidget::event(event);
}

// On the window's bright upper part the dim texts need a dark ground. Warnings bring their own.
void StatusLabel::paintEvent(QPaintEvent*) {
    QRect shown;
    for (QObject* const child : children())
        if (const auto* const part = qobject_cast<QWidget*>(child);
            part && !part->isHidden() && !dynamic_cast<const Warning*>(part))
            shown |= part->geometry();
    if (shown.isEmpty()) return;
    QPainter painter(this);
    const QRectF ground(shown.left() - groundPadding, (height() - groundHeight) / 2.0,
                        shown.width() + 2 * groundPadding, groundHeight);
    const QRectF capsule = Paint::snapped(painter, ground);
    Paint::fillKept(painter, capsule, capsule.height() / 2, Theme::legible);
}

}  // namespace Corvane
