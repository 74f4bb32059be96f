#include "cli/html.hpp"

#include "cli/output.hpp"

namespace Cli::Html {

namespace {

// `name` is "th" or "td".
std::string cell(const char* name, const std::string& attributes, const std::string& text) {
    return std::string("<") + name + attributes + ">" + escaped(text) + "</" + name + ">";
}

}  // namespace

std::string escaped(const std::string& text) {
    std::string markup;
    for (const char c : printable(text)) {
        switch (c) {
        case '&':
            markup += "&amp;";
            break;
        case '<':
            markup += "&lt;";
            break;
        case '>':
            markup += "&gt;";
            break;
        case '"':
            markup += "&quot;";
            break;
        case '\'':
            markup += "&#39;";
            break;
        default:
            markup += c;
        }
    }
    return markup;
}

std::string element(const std::string& name, const std::string& text) {
    return "<" + name + ">" + escaped(text) + "</" + name + ">\n";
}

std::string block(const std::string& name, const std::string& cssClass, const std::string& markup) {
    const std::string attribute = cssClass.empty() ? "" : " class=\"" + cssClass + "\"";
    return "<" + name + attribute + ">\n" + markup + "</" + name + ">\n";
}

std::string Table::markup() const {
    std::string head;
    for (const Column& column : columns)
        head +=
            cell("th", column.isNumber ? R"( scope="col" class="number")" : " scope=\"col\"", column.title);
    std::string body;
    for (const auto& row : rows) {
        body += "<tr>";
        for (std::size_t i = 0; i < row.size(); ++i) {
            std::string classes = columns[i].isNumber ? "number" : "";
            if (row[i].isOff) classes += " off";
            const std::string attribute = classes.empty() ? "" : " class=\"" + classes + "\"";
            body += i == 0 ? cell("th", " scope=\"row\"" + attribute, row[i].text)
                           : cell("td", attribute, row[i].text);
        }
        body += "</tr>\n";
    }
    return "<table>\n" + (caption.empty() ? "" : element("caption", caption)) + "<thead><tr>" + head +
           "</tr></thead>\n<tbody>\n" + body + "</tbody>\n</table>\n";
}

}  // namespace Cli::Html
