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
constexpr double top = 16;
constexpr double bottom = 360;
constexpr int topLevel = 18;  // dB, as in the window
constexpr std::string_view colours[] = {"#d9741b", "#1f77b4", "#2ca02c", "#9467bd", "#d62728", "#444444"};

double xOf(double hz) { return left + (right - left) * std::log10(hz / 20) / 3; }

double yOf(double db) {
    return top +
           (bottom - top) * (topLevel - std::clamp(db, -1.2 * topLevel, 1.2 * topLevel)) / (2 * topLevel);
}

std::string lineTo(double x1, double y1, double x2, double y2) {
    return "<line x1=\"" + fixed(x1, 1) + "\" y1=\"" + fixed(y1, 1) + "\" x2=\"" + fixed(x2, 1) + "\" y2=\"" +
           fixed(y2, 1) + "\" stroke=\"#ccc\"/>\n";
}

std::string textAt(double x, double y, const char* anchor, const std::string& text, std::string_view colour) {
    return "<text x=\"" + fixed(x, 1) + "\" y=\"" + fixed(y, 1) + "\" text-anchor=\"" + anchor +
           "\" fill=\"" + std::string(colour) + "\">" + text + "</text>\n";
}

std::string grid() {
    std::string svg;
    for (const int hz : {20, 50, 100, 200, 500, 1000, 2000, 5000, 10000, 20000}) {
        svg += lineTo(xOf(hz), top, xOf(hz), bottom);
        svg += textAt(xOf(hz), bottom + 16, "middle",
                      hz < 1000 ? std::to_string(hz) : std::to_string(hz / 1000) + "k", "#555");
    }
    for (int db = -topLevel; db <= topLevel; db += 6) {
        svg += lineTo(left, yOf(db), right, yOf(db));
        svg += textAt(left - 6, yOf(db) + 4, "end", std::to_string(db), "#555");
    }
    return svg;
}

}  // namespace

std::string svgOf(const std::vector<Curve>& curves) {
    std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " + fixed(width, 0) + " " +
                      fixed(height, 0) +
                      "\" font-family=\"sans-serif\" font-size=\"12\">\n"
                      "<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n"
                      "<clipPath id=\"plot\"><rect x=\"" +
                      fixed(left, 0) + "\" y=\"" + fixed(top, 0) + "\" width=\"" + fixed(right - left, 0) +
                      "\" height=\"" + fixed(bottom - top, 0) + "\"/></clipPath>\n" + grid();
    for (std::size_t i = 0; i < curves.size(); ++i) {
        const std::string_view colour = colours[i % std::size(colours)];
        svg += "<polyline clip-path=\"url(#plot)\" fill=\"none\" stroke-width=\"2\" stroke=\"" +
               std::string(colour) + "\" points=\"";
        const auto levels = curves[i].db();
        for (std::size_t k = 0; k < levels.size(); ++k)
            svg += fixed(xOf(curveFrequencies()[k]), 1) + "," + fixed(yOf(levels[k]), 1) + " ";
        svg += "\"/>\n" +
               textAt(left + 90 * static_cast<double>(i), height - 8, "start", curves[i].name, colour);
    }
    return svg + "</svg>\n";
}

}  // namespace Cli
