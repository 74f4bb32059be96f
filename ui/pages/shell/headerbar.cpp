#include "ui/pages/shell/headerbar.hpp"

#include "ui/pages/shared/bind.hpp"
#include "ui/pages/shared/text.hpp"
#include "ui/pages/shell/logotitle.hpp"

#include "ui/kit/caption.hpp"
#include "ui/kit/iconbutton.hpp"
#include "ui/kit/pillbutton.hpp"
#include "ui/kit/textfield.hpp"
#include "ui/kit/theme.hpp"
#include "ui/kit/wellmenu.hpp"

#include <QHBoxLayout>

namespace Corvane {

namespace {

constexpr QMargins margins(32, 34, 32, 10);
constexpr int tightTop = 30;  // the window's buttons are above

QString lastComponent(const std::string& path) { return toQString(path.substr(path.find_last_of('/') + 1)); }

}  // namespace

HeaderBar::HeaderBar(AppModel& model, bool choosesLink, QWidget* parent)
    : QWidget(parent)
    , model(model) {
    auto* const row = new QHBoxLayout(this);
    row->setSpacing(12);
    auto* const logo = new LogoTitle(this);
    title = logo;
    logo->onSecretClick = [&model] { model.technical = !model.technical.value(); };
    row->addWidget(logo);
    addTechnicalButton(*row);
    row->addStretch();
    if (choosesLink)
        addLinkChoice(*row);
    else
        addLinkName(*row);
    addConnectButton(*row);
}

void HeaderBar::setRoom(const Room& room) {
    const QMargins eased(margins.left() + room.beside, room.above + room.between(tightTop, margins.top()),
                         margins.right() + room.beside, margins.bottom());
    layout()->setContentsMargins(eased - QMargins(LogoTitle::bleed, LogoTitle::bleed, 0, LogoTitle::bleed));
    layout()->activate();
}

void HeaderBar::addTechnicalButton(QHBoxLayout& row) {
    auto* const button =
        new Kit::PillButton(QStringLiteral("MODO TÉCNICO"), Kit::PillButton::Size::compact, this);
    button->setIcon(QStringLiteral("xmark"));
    button->setToolTip(QStringLiteral("Voltar ao modo simples"));
    button->setOn(true);
    button->action = [this] { model.technical = false; };
    Corvane::bind(
        *button, [this] { return model.technical.value(); },
        [button](bool technical) { button->setVisible(technical); });
    row.addSpacing(8);
    row.addWidget(button);
}

void HeaderBar::addLinkChoice(QHBoxLayout& row) {
    auto* const choice = new Kit::WellMenu<std::string>(230, this);
    choice->setAccessibleName(QStringLiteral("Porta"));
    choice->onSelect = [this](const std::string& link) { model.portChoice = link; };
    Corvane::bind(
        *choice, [this] { return model.ports.value(); },
        [choice](const std::vector<std::string>& ports) {
            Kit::WellMenu<std::string>::Options options;
            for (const std::string& path : ports)
                options.emplace_back(path, lastComponent(path));
            options.emplace_back(AppModel::bridgeChoice, QStringLiteral("Controle Wi-Fi (ESP32)"));
            choice->setOptions(std::move(options));
        });
    Corvane::bind(
        *choice, [this] { return model.portChoice.value(); },
        [choice](const std::string& link) { choice->setSelection(link); });
    row.addWidget(choice);

    auto* const host = new Kit::TextField(QStringLiteral("endereço"), QSize(150, 30), 12, this);
    connect(host, &QLineEdit::textEdited, this,
            [this](const QString& text) { model.espHost = toUtf8(text); });
    Corvane::bind(
        *host, [this] { return model.espHost.value(); },
        [host](const std::string& text) {
            if (toUtf8(host->text()) != text) host->setText(toQString(text));
        });
    Corvane::bind(
        *host, [this] { return model.portChoice.value() == AppModel::bridgeChoice; },
        [host](bool bridge) { host->setVisible(bridge); });
    row.addWidget(host);

    auto* const refresh =
        new Kit::IconButton(QStringLiteral("arrow.clockwise"), QStringLiteral("Atualizar portas"), 16, this);
    refresh->action = [this] { model.refreshPorts(); };
    row.addWidget(refresh);
}

void HeaderBar::addLinkName(QHBoxLayout& row) {
    auto* const name = new Kit::Caption({}, Theme::font(13, QFont::Medium), Theme::secondary, this);
    Corvane::bind(
        *name, [this] { return model.portChoice.value(); },
        [name](const std::string& link) { name->setText(lastComponent(link)); });
    row.addWidget(name);
}

void HeaderBar::addConnectButton(QHBoxLayout& row) {
    const QString connects = QStringLiteral("CONECTAR");
    const QString disconnects = QStringLiteral("DESCONECTAR");
    auto* const button = new Kit::PillButton(connects, Kit::PillButton::Size::compact, this);
    button->setIcon(QStringLiteral("cable.connector"));
    connection = button;
    button->reserveFor({connects, disconnects});
    button->action = [this] {
        const Status status = model.status.value();
        const bool linked = status.isWorking() || status.isOnline();
        model.start(linked ? model.leave() : model.connect());
    };
    Corvane::bind(
        *button,
        [this] {
            const Status status = model.status.value();
            return status.isWorking() || status.isOnline();
        },
        [button, connects, disconnects](bool linked) {
            button->setTitle(linked ? disconnects : connects);
            button->setOn(linked);
        });
    row.addWidget(button);
}

}  // namespace Corvane
