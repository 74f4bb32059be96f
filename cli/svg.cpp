#include "cli/curves.hpp"
#include "cli/numbers.hpp"
#include "cli/output.hpp"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace Cli {

namespace {

constexpr double width = 900;
constexpr double height = 400;
constexpr double left = 44;
constexpr double right = 884;
constexpr double top = 26;
constexpr double bottom = 352;
constexpr double letterWidth = 8;  // of the legend, roughly
constexpr int topLevel = 18;       // dB, as in the window

// Dashes tell the curves apart on paper without colours.
constexpr struct {
    std::string_view colour;
    std::string_view dashes;
} strokes[] = {
    {"#d9741b", "none"},    {"#1f77b4", "9 3"},  {"#2ca02c", "3 2"},
    {"#9467bd", "9 3 2 3"}, {"#d62728", "14 4"}, {"#444444", "6 2 2 2 2 2"},
};

double xOf(double hz) { return left + (right - left) * std::log10(hz / 20) / 3; }

double yOf(double db) {
    return top +
           (bottom - top) * (topLevel - std::clamp(db, -1.2 * topLevel, 1.2 * topLevel)) / (2 * topLevel);
}

std::string lineTo(double x1, double y1, double x2, double y2, std::string_view colour) {
    return "<line x1=\"" + fixed(x1, 1) + "\" y1=\"" + fixed(y1, 1) + "\" x2=\"" + fixed(x2, 1) + "\" y2=\"" +
           fixed(y2, 1) + "\" stroke=\"" + std::string(colour) + "\"/>\n";
}

std::string textAt(double x, double y, const char* anchor, const std::string& text, std::string_view colour) {
    return "<text x=\"" + fixed(x, 1) + "\" y=\"" + fixed(y, 1) + "\" text-anchor=\"" + anchor +
           "\" fill=\"" + std::string(colour) + "\">" + text + "</text>\n";
}

std::string grid() {
    std::string svg;
    for (const int decade : {10, 100, 1000, 10000})
        for (int hz = 2 * decade; hz <= 10 * decade && hz <= 20000; hz += decade)
            svg += lineTo(xOf(hz), top, xOf(hz), bottom, hz == 10 * decade ? "#bbb" : "#e6e6e6");
    for (const int hz : {20, 50, 100, 200, 500, 1000, 2000, 5000, 10000, 20000})
        svg += textAt(xOf(hz), bottom + 16, "middle",
                      hz < 1000 ? std::to_string(hz) : std::to_string(hz / 1000) + "k", "#555");
    svg += textAt(right, bottom + 32, "end", "Hz", "#555");
    for (int db = -topLevel; db <= topLevel; db += 6) {
        svg += lineTo(left, yOf(db), right, yOf(db), db == 0 ? "#888" : "#ddd");
        svg += textAt(left - 6, yOf(db) + 4, "end", (db > 0 ? "+" : "") + std::to_string(db), "#555");
    }
    return svg + textAt(left - 6, top - 12, "end", "dB", "#555");
}

std::string polyline(const Curve& curve, std::string_view stroke) {
    std::string svg = R"(<polyline fill="none" stroke-width="2" stroke-linejoin="round" )" +
                      std::string(stroke) + " points=\"";
    const auto levels = curve.db();
    for (std::size_t i = 0; i < levels.size(); ++i)
        svg += fixed(xOf(curveFrequencies()[i]), 1) + "," + fixed(yOf(levels[i]), 1) + " ";
    return svg + "\"/>\n";
}

}  // namespace

std::string svgOf(const std::vector<Curve>& curves) {
    const std::string plot =
        fixed(left, 0) + " " + fixed(top, 0) + " " + fixed(right - left, 0) + " " + fixed(bottom - top, 0);
    std::string lines;
    std::string legend;
    double x = left;
    for (std::size_t i = 0; i < curves.size(); ++i) {
        const auto& [colour, dashes] = strokes[i % std::size(strokes)];
        const std::string stroke =
            "stroke=\"" + std::string(colour) + "\" stroke-dasharray=\"" + std::string(dashes) + "\"";
        lines += polyline(curves[i], stroke);
        const double y = height - 12;
        legend += "<path d=\"M" + fixed(x, 0) + " " + fixed(y, 0) + R"(h34" stroke-width="2" )" + stroke +
                  "/>\n" + textAt(x + 40, y + 4, "start", curves[i].name, "#222");
        x += 64 + letterWidth * static_cast<double>(curves[i].name.size());
    }
    // An inner drawing clips what runs beyond it. It needs no name, so several fit into one page.
    return R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 )" + fixed(width, 0) + " " +
           fixed(height, 0) +
           "\" font-family=\"sans-serif\" font-size=\"13\">\n"
           "<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n" +
           grid() + "<svg x=\"" + fixed(left, 0) + "\" y=\"" + fixed(top, 0) + "\" width=\"" +
           fixed(right - left, 0) + "\" height=\"" + fixed(bottom - top, 0) + "\" viewBox=\"" + plot +
           "\">\n" + lines + "</svg>\n" + legend + "</svg>\n";
}

}  // namespace Cli
