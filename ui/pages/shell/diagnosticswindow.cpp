#include "ui/pages/shell/diagnosticswindow.hpp"

#include "ui/pages/shared/bind.hpp"
#include "ui/pages/shell/diagnostics.hpp"

#include "ui/kit/backdrop.hpp"
#include "ui/kit/pillbutton.hpp"
#include "ui/kit/theme.hpp"
#include "ui/kit/well.hpp"

#include <QApplication>
#include <QClipboard>
#include <QFontDatabase>
#include <QPainter>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QShortcut>

namespace Corvane {

namespace {

constexpr QSize usual{980, 720};
constexpr int margin = 24;
constexpr int refreshMs = 500;

}  // namespace

// Text that can be selected. It stands still while something is selected.
class DiagnosticsWindow::Text final : public QPlainTextEdit {
public:
    // `Place::end`: the text shows its end until the user scrolls up.
    enum class Place { start, end };

    Text(const QString& name, Place place, QWidget* parent)
        : QPlainTextEdit(parent)
        , place(place) {
        setAccessibleName(name);
        setReadOnly(true);
        setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        setLineWrapMode(NoWrap);
        setFrameShape(NoFrame);
        setFont(fixedFont());
        QPalette colors = palette();
        colors.setColor(QPalette::Base, Qt::transparent);
        colors.setColor(QPalette::Text, Theme::text);
        setPalette(colors);
        viewport()->setAutoFillBackground(false);
        setStyleSheet(styleOfScrollBars());
    }

    void setContent(const QString& text) {
        if (textCursor().hasSelection() || text == toPlainText()) return;
        QScrollBar& bar = *verticalScrollBar();
        const int before = bar.value();
        const bool follows = place == Place::end && before == bar.maximum();
        setPlainText(text);
        bar.setValue(follows ? bar.maximum() : before);
    }

private:
    static QFont fixedFont() {
        QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
        font.setPixelSize(12);
        return font;
    }

    static QString styleOfScrollBars() {
        return QStringLiteral("QScrollBar { background: transparent; border: none; }"
                              "QScrollBar:vertical { width: 8px; } QScrollBar:horizontal { height: 8px; }"
                              "QScrollBar::handle { background: %1; border-radius: 4px; }"
                              "QScrollBar::handle:vertical { min-height: 24px; }"
                              "QScrollBar::handle:horizontal { min-width: 24px; }"
                              "QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }"
                              "QScrollBar::add-page, QScrollBar::sub-page { background: none; }"
                              "QAbstractScrollArea::corner { background: transparent; border: none; }")
            .arg(Theme::grey(0.35).name());
    }

    const Place place;
};

DiagnosticsWindow::DiagnosticsWindow(AppModel& model, QWidget* parent)
    : Surface(parent, Qt::Dialog)
    , model(model)
    , events(new Text(QStringLiteral("Eventos"), Text::Place::end, this))
    , counts(new Text(QStringLiteral("Linha"), Text::Place::start, this))
    , frames(new Text(QStringLiteral("Quadros"), Text::Place::end, this)) {
    setWindowTitle(QStringLiteral("Diagnóstico"));
    setAttribute(Qt::WA_DeleteOnClose);
    resize(usual);
    auto* const copy = new Kit::PillButton(QStringLiteral("Copiar"), Kit::PillButton::Size::compact, this);
    copy->setToolTip(QStringLiteral("Copia tudo, para enviar ao suporte"));
    copy->action = [&model] { QApplication::clipboard()->setText(Diagnostics::everything(model)); };
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(margin, margin, margin, margin);
    rows->setSpacing(margin);
    Kit::Panel* const line = panelFor(QStringLiteral("LINHA"), counts);
    line->setTrailing(copy);
    rows->addWidget(line, 2);
    auto* const below = new QHBoxLayout;
    below->setSpacing(margin);
    below->addWidget(panelFor(QStringLiteral("EVENTOS"), events), 1);
    below->addWidget(panelFor(QStringLiteral("QUADROS"), frames), 1);
    rows->addLayout(below, 3);

    Corvane::bind(
        *this, [&model] { return model.events.count.value(); },
        [this](std::uint64_t) { events->setContent(Diagnostics::events(this->model)); });
    connect(&timer, &QTimer::timeout, this, [this] { showLine(); });
    timer.start(refreshMs);
    showLine();
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, [this] { close(); });
}

Kit::Panel* DiagnosticsWindow::panelFor(const QString& title, Text* text) {
    auto* const panel = new Kit::Panel(title, this);
    auto* const well = new Kit::Well(10, panel);
    auto* const room = new QVBoxLayout(well);
    room->setContentsMargins(10, 8, 6, 6);
    room->addWidget(text);
    panel->content().addWidget(well);
    return panel;
}

void DiagnosticsWindow::showLine() {
    const LineReport line = model.lineReport();
    counts->setContent(Diagnostics::counts(model, line));
    frames->setContent(Diagnostics::frames(line));
}

void DiagnosticsWindow::paintEvent(QPaintEvent* event) {
    {
        QPainter painter(this);
        Kit::drawBackdrop(painter, rect());
    }
    Surface::paintEvent(event);
}

}  // namespace Corvane
