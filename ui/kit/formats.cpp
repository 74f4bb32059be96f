#include "ui/kit/formats.hpp"

#include <cmath>

namespace Formats {

namespace {

// A small negative level would read "-0.0".
double withoutNegativeZero(double db) { return std::abs(db) < 0.05 ? 0 : db; }

}  // namespace

QString decibels(double db) { return QString::asprintf("%.1f dB", withoutNegativeZero(db)); }
QString signedDecibels(double db) { return QString::asprintf("%+.1f dB", withoutNegativeZero(db)); }
QString wholeDecibels(double db) { return QString::asprintf("%.0f dB", db); }
QString ratio(double ratio) { return QString::asprintf("%.1f : 1", ratio); }
QString quality(double q) { return QString::asprintf("%.2f", q); }
QString delay(double ms) { return QString::asprintf("%.2f ms", ms); }
QString distance(double ms) { return QString::asprintf("%.1f cm", ms * centimetresPerMs); }

QString spokenDelay(double ms) { return delay(ms) + QStringLiteral(", ") + distance(ms); }

QString time(std::uint32_t ms) {
    return ms < 1000 ? QString::asprintf("%u ms", ms) : QString::asprintf("%.2f s", ms / 1000.0);
}

QString percent(double fraction) { return QString::asprintf("%.0f%%", fraction * 100); }

QString formatHz(double hz) {
    if (hz < 1000) return QString::asprintf("%.0f Hz", hz);
    return QString::asprintf(hz < 10000 ? "%.2fk" : "%.1fk", hz / 1000);
}

QString spokenHz(double hz) { return QString::asprintf("%.0f Hz", hz); }

}  // namespace Formats
