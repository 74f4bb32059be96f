#include "ui/pages/shell/keylist.hpp"

#include "ui/kit/backdrop.hpp"
#include "ui/kit/caption.hpp"
#include "ui/kit/pillbutton.hpp"
#include "ui/kit/theme.hpp"

#include <QGridLayout>
#include <QPainter>
#include <QShortcut>

#include <utility>
#include <vector>

namespace Corvane {

namespace {

constexpr int margin = 24;
constexpr int columnGap = 18;
constexpr int rowGap = 7;
constexpr int groupGap = 12;  // above a title

struct Line {
    const char16_t* keys;
    const char16_t* meaning;
};

struct Group {
    const char16_t* title;
    std::vector<Line> lines;
};

const std::vector<Group>& groups() {
    static const std::vector<Group> all{
        {u"IR DE UM LUGAR A OUTRO",
         {{u"Tab, Shift + Tab", u"próximo controle, anterior"},
          {u"setas", u"dentro de etiquetas, abas, teclas de um grupo, roteamento e tabela"},
          {u"F6, Shift + F6", u"topo, faixa das caixas, página"},
          {u"Ctrl + Page Up, Page Down", u"página anterior, próxima"},
          {u"Ctrl + 1 a 9", u"escolhe a página"},
          {u"Alt + 1 a 9", u"escolhe a caixa"},
          {u"Alt + 0, Esc", u"todas as caixas"},
          {u"Ctrl + Alt + Enter no logotipo", u"modo técnico"}}},
        {u"AJUSTAR",
         {{u"setas, Page Up, Page Down", u"um passo, dez passos (Alt ou Shift: fino)"},
          {u"um número e Enter", u"o valor digitado (Esc desiste)"},
          {u"Home, End", u"valor de fábrica, o maior valor"},
          {u"Espaço, Enter", u"liga, desliga, escolhe"},
          {u"Alt + seta para baixo", u"abre uma lista"},
          {u"Ctrl + setas na tabela", u"um passo no campo"},
          {u"M", u"mudo do canal em que está o foco"}}},
        {u"GRÁFICO DO EQUALIZADOR",
         {{u"[ e ], 1 a 0", u"escolhe a banda"},
          {u"setas", u"frequência e ganho"},
          {u"Page Up, Page Down", u"Q"},
          {u"Enter", u"digita frequência, Q e ganho"},
          {u"Home", u"ganho zero"},
          {u"Ctrl + C, Ctrl + V", u"copia e cola a banda (com Shift, todas)"}}},
        {u"JANELA",
         {{u"Ctrl + Z", u"desfaz"},
          {u"Ctrl + Shift + Z, Ctrl + Y", u"refaz"},
          {u"Ctrl + L", u"trava e destrava a página"},
          {u"Ctrl + S", u"salva um preset: digite o nome e Enter"},
          {u"Ctrl + R", u"lê de novo as caixas escolhidas"},
          {u"Ctrl + Shift + D", u"Diagnóstico"},
          {u"F1", u"esta lista"}}},
    };
    return all;
}

Kit::Caption* caption(const char16_t* text, const QFont& font, const QColor& color, QWidget* parent) {
    auto* const made = new Kit::Caption(QString::fromUtf16(text), font, color, parent);
    made->setMinimumWidth(made->sizeHint().width());  // a caption would give way
    return made;
}

}  // namespace

KeyList::KeyList(std::function<void()> openManual, QWidget* parent)
    : Surface(parent, Qt::Dialog) {
    setWindowTitle(QStringLiteral("Teclado"));
    setAttribute(Qt::WA_DeleteOnClose);
    auto* const panel = new Kit::Panel(QStringLiteral("TECLADO"), this);
    auto* const manual =
        new Kit::PillButton(QStringLiteral("Abrir o manual"), Kit::PillButton::Size::compact, this);
    manual->action = std::move(openManual);
    panel->setTrailing(manual);
    auto* const halves = new QHBoxLayout;
    halves->setSpacing(2 * margin);
    const auto half = [&](std::size_t from, std::size_t to) {
        auto* const grid = new QGridLayout;
        grid->setHorizontalSpacing(columnGap);
        grid->setVerticalSpacing(rowGap);
        int row = 0;
        for (std::size_t i = from; i < to; ++i) {
            if (row > 0) grid->setRowMinimumHeight(row++, groupGap);
            grid->addWidget(
                caption(groups()[i].title, Theme::font(11, QFont::DemiBold, 1.5), Theme::secondary, panel),
                row++, 0, 1, 2);
            for (const Line& line : groups()[i].lines) {
                grid->addWidget(caption(line.keys, Theme::font(12, QFont::DemiBold), Theme::text, panel), row,
                                0);
                grid->addWidget(caption(line.meaning, Theme::font(12), Theme::text, panel), row++, 1);
            }
        }
        grid->setRowStretch(row, 1);
        halves->addLayout(grid);
    };
    half(0, 2);
    half(2, groups().size());
    panel->content().addLayout(halves);
    auto* const whole = new QVBoxLayout(this);
    whole->setContentsMargins(margin, margin, margin, margin);
    whole->addWidget(panel);
    setFocus();  // Tab then goes to the button, which shows it
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, [this] { close(); });
    connect(new QShortcut(Qt::Key_F1, this), &QShortcut::activated, this, [this] { close(); });
}

void KeyList::paintEvent(QPaintEvent* event) {
    {
        QPainter painter(this);
        Kit::drawBackdrop(painter, rect());
    }
    Surface::paintEvent(event);
}

}  // namespace Corvane
