#include "ui/kit/textfield.hpp"

#include "ui/kit/shadows.hpp"

namespace Kit {

namespace {

constexpr int padding = 8;
constexpr double cornerRadius = 8;

}  // namespace

TextField::TextField(const QString& placeholder, QSize size, double fontSize, QWidget* parent)
    : QLineEdit(parent)
    , usualFont(Theme::font(fontSize)) {
    setPlaceholderText(placeholder);
    setAccessibleName(placeholder);
    setFixedSize(size);
    setFrame(false);
    setFont(usualFont);
    setTextMargins(padding, 0, padding, 0);
    QPalette colors = palette();
    colors.setColor(QPalette::Base, Qt::transparent);
    colors.setColor(QPalette::Text, Theme::text);
    colors.setColor(QPalette::PlaceholderText, Theme::secondary);
    colors.setColor(QPalette::Highlight, Theme::accent);
    colors.setColor(QPalette::HighlightedText, Theme::well);
    setPalette(colors);
}

void TextField::setGrowth(double factor) { setFont(Theme::grown(usualFont, factor)); }

void TextField::paintEvent(QPaintEvent* event) {
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        Paint::well(painter, rect(), cornerRadius);
        if (hasFocus())
            Paint::edge(painter, Paint::snapped(painter, rect()), cornerRadius, Theme::white(0.5), 1.5);
    }
    QLineEdit::paintEvent(event);
}

}  // namespace Kit
