#pragma once

#include <string>
#include <utility>
#include <vector>

// Parts of a page. Every text goes through `escaped`: what a board sends cannot become markup.
namespace Cli::Html {

/// The text for the inside of an element or an attribute, without control characters.
std::string escaped(const std::string& text);

/// An element around a text.
std::string element(const std::string& name, const std::string& text);

/// An element around markup, on lines of its own.
std::string block(const std::string& name, const std::string& cssClass, const std::string& markup);

struct Cell {
    Cell(std::string text, bool isOff = false)
        : text(std::move(text))
        , isOff(isOff) {}
    Cell(const char* text)
        : Cell(std::string(text)) {}

    std::string text;
    bool isOff;  // shown pale: the value has no effect
};

struct Column {
    std::string title;
    bool isNumber = false;  // aligned to the right
};

/// The first cell of each row is its title.
struct Table {
    std::string caption;
    std::vector<Column> columns;
    std::vector<std::vector<Cell>> rows;

    std::string markup() const;
};

}  // namespace Cli::Html
