#include "ui/pages/shell/offlinecard.hpp"

#include "ui/kit/caption.hpp"
#include "ui/kit/pillbutton.hpp"
#include "ui/kit/symbols.hpp"
#include "ui/pages/shared/bind.hpp"

namespace Corvane {

namespace {

constexpr int padding = 36;
constexpr int spacing = 12;
constexpr int leastWidth = 680;  // so that it clearly covers the gap between the panels of the first page

class Plug final : public QWidget {
public:
    explicit Plug(QWidget* parent)
        : QWidget(parent) {
        setFixedSize(44, 34);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        QRectF icon(0, 0, height(), height());
        icon.moveCenter(QRectF(rect()).center());
        Symbols::draw(painter, QStringLiteral("cable.connector.horizontal"), icon, Theme::accent);
    }
};

Kit::Caption* line(const QString& text, double size, const QColor& color, QWidget* parent) {
    auto* const caption = new Kit::Caption(text, Theme::font(size), color, parent);
    caption->setAlignment(Qt::AlignCenter);
    return caption;
}

}  // namespace

OfflineCard::OfflineCard(AppModel& model, QWidget* parent)
    : Panel({}, parent) {
    layout()->setContentsMargins(padding, padding, padding, padding);
    setMinimumWidth(leastWidth);
    content().setSpacing(spacing);
    content().addWidget(new Plug(this), 0, Qt::AlignHCenter);
    auto* const title = line({}, 20, Theme::text, this);
    content().addWidget(title, 0, Qt::AlignHCenter);
    auto* const lines = new QVBoxLayout;
    lines->setSpacing(4);
    for (const QString& text :
         {QStringLiteral("Escolha o adaptador USB-RS485 ou o controle Wi-Fi no topo e toque em Conectar."),
          QStringLiteral("O cabo vai na entrada \"From PC\" da primeira caixa.")})
        lines->addWidget(line(text, 13, Theme::secondary, this), 0, Qt::AlignHCenter);
    content().addLayout(lines);
    auto* const button =
        new Kit::PillButton(QStringLiteral("CONECTAR"), Kit::PillButton::Size::regular, this);
    button->setIcon(QStringLiteral("bolt.horizontal"));
    button->action = [&model] { model.start(model.connect()); };
    auto* const below = new QWidget(this);
    auto* const room = new QVBoxLayout(below);
    room->setContentsMargins(0, 4, 0, 0);
    room->addWidget(button);
    content().addWidget(below, 0, Qt::AlignHCenter);
    Corvane::bind(
        *this, [&model] { return model.status.value().isWorking(); },
        [title, below](bool working) {
            title->setText(working ? QStringLiteral("Conectando às caixas…")
                                   : QStringLiteral("Conecte às caixas"));
            below->setVisible(!working);
        });
}

}  // namespace Corvane
