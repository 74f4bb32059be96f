#include "packaging/describe/manual.hpp"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStringList>

#include <stdexcept>
#include <utility>

namespace Describe {

namespace {

constexpr auto head = R"(<!DOCTYPE html>
<html lang="pt-BR">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>Manual do Corvane</title>
<style>
body { max-width: 50rem; margin: 2rem auto; padding: 0 1rem; font: 1rem/1.55 sans-serif; color: #1d2126; background: #fff; }
h1, h2, h3 { line-height: 1.2; margin: 2em 0 .6em; }
h1 { margin-top: 0; }
img { max-width: 100%; border-radius: 8px; }
table { border-collapse: collapse; width: 100%; }
th, td { border: 1px solid #ccd2d9; padding: .4rem .6rem; text-align: left; vertical-align: top; }
th { background: #f1f3f5; }
code { font-family: monospace; background: #f1f3f5; padding: 0 .2em; border-radius: 3px; }
nav { columns: 2; font-size: .95rem; }
@media (prefers-color-scheme: dark) {
  body { color: #dde2e8; background: #16191d; }
  th, td { border-color: #3a424c; }
  th, code { background: #22272e; }
  a { color: #ffb066; }
}
</style>
</head>
<body>
)";

QByteArray contentsOf(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) throw std::runtime_error("cannot read " + path.toStdString());
    return file.readAll();
}

// The Markdown that the manual uses: headings, paragraphs, lists, tables, pictures, bold and code.
class Page {
public:
    explicit Page(QString folder)
        : folder(std::move(folder)) {}

    QString make(const QString& markdown) {
        const QStringList lines = markdown.split(u'\n');
        for (const QString& line : lines)
            add(line);
        begin(Block::none);
        return QString::fromUtf8(head) + body.replace(contentsMark, contents()) +
               QStringLiteral("</body>\n</html>\n");
    }

private:
    enum class Block { none, paragraph, bullets, numbers, table };

    void add(const QString& line) {
        static const QRegularExpression heading(QStringLiteral("^(#{1,3}) (.*)$"));
        static const QRegularExpression number(QStringLiteral("^[0-9]+\\. (.*)$"));
        static const QRegularExpression rule(QStringLiteral("^[|: -]+$"));
        if (const auto found = heading.match(line); found.hasMatch())
            return addHeading(static_cast<int>(found.captured(1).size()), found.captured(2));
        if (line.trimmed().isEmpty()) return begin(Block::none);
        if (line.startsWith(u'|')) {
            if (rule.match(line).hasMatch()) return;
            const bool isFirst = block != Block::table;
            begin(Block::table);
            return addRow(line, isFirst ? QStringLiteral("th") : QStringLiteral("td"));
        }
        if (line.startsWith(QStringLiteral("- "))) {
            begin(Block::bullets);
            body += QStringLiteral("<li>") + inlined(line.mid(2)) + QStringLiteral("</li>\n");
            return;
        }
        if (const auto found = number.match(line); found.hasMatch()) {
            begin(Block::numbers);
            body += QStringLiteral("<li>") + inlined(found.captured(1)) + QStringLiteral("</li>\n");
            return;
        }
        begin(Block::paragraph);
        body += inlined(line) + u'\n';
    }

    void addHeading(int level, const QString& text) {
        begin(Block::none);
        const QString id = QStringLiteral("s%1").arg(++headings);
        body += QStringLiteral("<h%1 id=\"%2\">%3</h%1>\n").arg(level).arg(id, inlined(text));
        if (level == 1) body += contentsMark;
        if (level == 2)
            chapters += QStringLiteral("<li><a href=\"#%1\">%2</a></li>\n").arg(id, inlined(text));
    }

    void addRow(const QString& line, const QString& cell) {
        body += QStringLiteral("<tr>");
        QStringList cells = line.split(u'|');
        cells.removeFirst();
        cells.removeLast();
        for (const QString& text : std::as_const(cells))
            body += QStringLiteral("<%1>%2</%1>").arg(cell, inlined(text.trimmed()));
        body += QStringLiteral("</tr>\n");
    }

    void begin(Block next) {
        if (next == block) return;
        body += tag(block, QStringLiteral("</")) + tag(next, QStringLiteral("<"));
        block = next;
    }

    static QString tag(Block block, const QString& opening) {
        switch (block) {
        case Block::none:
            return {};
        case Block::paragraph:
            return opening + QStringLiteral("p>\n");
        case Block::bullets:
            return opening + QStringLiteral("ul>\n");
        case Block::numbers:
            return opening + QStringLiteral("ol>\n");
        case Block::table:
            return opening + QStringLiteral("table>\n");
        }
        return {};
    }

    QString inlined(const QString& text) const {
        static const QRegularExpression picture(QStringLiteral("!\\[([^\\]]*)\\]\\(([^)]*)\\)"));
        static const QRegularExpression link(QStringLiteral("\\[([^\\]]*)\\]\\(([^)]*)\\)"));
        static const QRegularExpression code(QStringLiteral("`([^`]*)`"));
        static const QRegularExpression bold(QStringLiteral("\\*\\*([^*]*)\\*\\*"));
        static const QRegularExpression italic(QStringLiteral("\\*([^*]+)\\*"));
        QString made = text.toHtmlEscaped();
        for (auto found = picture.match(made); found.hasMatch(); found = picture.match(made)) {
            const QByteArray bytes = contentsOf(folder + u'/' + found.captured(2)).toBase64();
            made.replace(found.capturedStart(), found.capturedLength(),
                         QStringLiteral("<img alt=\"%1\" src=\"data:image/png;base64,%2\">")
                             .arg(found.captured(1), QString::fromLatin1(bytes)));
        }
        made.replace(link, QStringLiteral("<a href=\"\\2\">\\1</a>"));
        made.replace(code, QStringLiteral("<code>\\1</code>"));
        made.replace(bold, QStringLiteral("<strong>\\1</strong>"));
        made.replace(italic, QStringLiteral("<em>\\1</em>"));
        return made;
    }

    QString contents() const {
        return QStringLiteral("<nav><ul>\n") + chapters + QStringLiteral("</ul></nav>\n");
    }

    const QString contentsMark = QStringLiteral("<!-- contents -->\n");
    const QString folder;  // of the pictures
    Block block = Block::none;
    int headings = 0;
    QString body;
    QString chapters;
};

}  // namespace

QString manualPage(const QString& markdownFile) {
    return Page(QFileInfo(markdownFile).path()).make(QString::fromUtf8(contentsOf(markdownFile)));
}

}  // namespace Describe
