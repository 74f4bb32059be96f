#include "ui/pages/shell/diagnosticswindow.hpp"

#include "ui/pages/shared/bind.hpp"
#include "ui/pages/shell/diagnostics.hpp"

#include "ui/kit/backdrop.hpp"
#include "ui/kit/pillbutton.hpp"
#include "ui/kit/shadows.hpp"

#include <QApplication>
#include <QClipboard>
#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QShortcut>

namespace Corvane {

namespace {

constexpr QSize usual{980, 720};
constexpr int margin = 24;
constexpr int refreshMs = 500;

}  // namespace

// Text in a well. It shows its end until the user scrolls, and stands still while something is selected.
class DiagnosticsWindow::Text final : public QPlainTextEdit {
public:
    Text(const QString& name, QWidget* parent)
        : QPlainTextEdit(parent) {
        setAccessibleName(name);
        setReadOnly(true);
        setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        setLineWrapMode(NoWrap);
        setFrameShape(NoFrame);
        setFont(fixedFont());
        setViewportMargins(10, 8, 6, 8);
        QPalette colors = palette();
        colors.setColor(QPalette::Base, Qt::transparent);
        colors.setColor(QPalette::Text, Theme::text);
        setPalette(colors);
        viewport()->setAutoFillBackground(false);
    }

    void show(const QString& text) {
        if (textCursor().hasSelection() || text == toPlainText()) return;
        QScrollBar& bar = *verticalScrollBar();
        const int place = bar.value();
        const bool atEnd = place == bar.maximum();
        setPlainText(text);
        bar.setValue(atEnd ? bar.maximum() : place);
    }

protected:
    void paintEvent(QPaintEvent* event) override {
        {
            QPainter painter(viewport());
            painter.setRenderHint(QPainter::Antialiasing);
            painter.translate(-viewport()->pos());
            Paint::well(painter, rect(), 10);
        }
        QPlainTextEdit::paintEvent(event);
    }

private:
    static QFont fixedFont() {
        QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
        font.setPixelSize(12);
        return font;
    }
};

DiagnosticsWindow::DiagnosticsWindow(AppModel& model, QWidget* parent)
    : Surface(parent, Qt::Dialog)
    , model(model)
    , events(new Text(QStringLiteral("Eventos"), this))
    , counts(new Text(QStringLiteral("Linha"), this))
    , frames(new Text(QStringLiteral("Quadros"), this)) {
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
        [this](std::uint64_t) { events->show(Diagnostics::events(this->model)); });
    connect(&timer, &QTimer::timeout, this, [this] { showLine(); });
    timer.start(refreshMs);
    showLine();
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, [this] { close(); });
}

Kit::Panel* DiagnosticsWindow::panelFor(const QString& title, Text* text) {
    auto* const panel = new Kit::Panel(title, this);
    panel->content().addWidget(text);
    return panel;
}

void DiagnosticsWindow::showLine() {
    const LineReport line = model.lineReport();
    counts->show(Diagnostics::counts(line));
    frames->show(Diagnostics::frames(line));
}

void DiagnosticsWindow::paintEvent(QPaintEvent* event) {
    {
        QPainter painter(this);
        Kit::drawBackdrop(painter, rect());
    }
    Surface::paintEvent(event);
}

}  // namespace Corvane
