#include "ui/pages/shell/statuslabel.hpp"

#include "ui/pages/shared/bind.hpp"
#include "ui/pages/shared/text.hpp"

#include "ui/kit/button.hpp"
#include "ui/kit/caption.hpp"
#include "ui/kit/formats.hpp"
#include "ui/kit/lamp.hpp"
#include "ui/kit/spinner.hpp"
#include "ui/kit/text.hpp"

#include <QHBoxLayout>

#include <cmath>

namespace Corvane {

namespace {

constexpr double fontSize = 13;

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

class Notice final : public Kit::Button {
public:
    explicit Notice(QWidget* parent)
        : Button(parent) {
        setCursor(Qt::PointingHandCursor);
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    }

    void setText(const QString& value) {
        text = value;
        setAccessibleName(value);
        setToolTip(value);
        setVisible(!value.isEmpty());
        updateGeometry();
        stateChanged();
    }

    QSize sizeHint() const override {
        return {static_cast<int>(std::ceil(Paint::textWidth(text, style()))) + 2, 22};
    }
    QSize minimumSizeHint() const override { return {0, sizeHint().height()}; }

protected:
    void paint(QPainter& painter) override {
        Paint::text(painter, rect(), Qt::AlignLeft | Qt::AlignVCenter, text, style());
    }

private:
    Paint::TextStyle style() const {
        return {Theme::font(fontSize), isHovered() ? Theme::accent.lighter(115) : Theme::accent, {}, false};
    }

    QString text;
};

}  // namespace

StatusLabel::StatusLabel(AppModel& model, QWidget* parent)
    : QWidget(parent)
    , spinner(new Kit::Spinner(this))
    , lamp(new LitLamp(this))
    , text(new Kit::Caption({}, Theme::font(fontSize), Theme::secondary, this))
    , percentage(new Kit::Caption({}, Theme::font(fontSize), Theme::secondary, this)) {
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    percentage->setTabular(true);
    percentage->reserveFor(Formats::percent(1));
    row->addWidget(spinner);
    row->addWidget(lamp);
    row->addWidget(text);
    row->addWidget(percentage);
    auto* const notice = new Notice(this);
    row->addWidget(notice);
    notice->action = [&model] { model.notice = std::nullopt; };

    Corvane::bind(
        *this, [&model] { return model.status.value(); }, [this](const Status& status) { show(status); });
    Corvane::bind(
        *percentage,
        [&model] { return model.status.value().isWorking() ? model.progress.value() : std::nullopt; },
        [this](std::optional<double> progress) {
            percentage->setText(progress ? Formats::percent(*progress) : QString());
            percentage->setVisible(progress.has_value());
        });
    Corvane::bind(
        *notice, [&model] { return model.notice.value(); },
        [notice](const std::optional<std::string>& warning) {
            notice->setText(toQString(warning.value_or(std::string())));
        });
}

void StatusLabel::show(const Status& status) {
    const bool offline = status.state == Status::Case::offline;
    const QString line = offline ? QStringLiteral("Desconectado") : toQString(status.text);
    spinner->setVisible(status.isWorking());
    lamp->setVisible(status.isOnline());
    text->setText(line);
    text->setColor(status.state == Status::Case::error ? Theme::error : Theme::secondary);
    setToolTip(line);
}

}  // namespace Corvane
