#pragma once

#include <QString>

#include <cstdint>

/// The texts of read-outs. They have a decimal point in every locale.
namespace Formats {

constexpr double centimetresPerMs = 34.3;  // that sound travels

QString decibels(double db);        // "-3.5 dB"
QString signedDecibels(double db);  // "+3.5 dB"
QString wholeDecibels(double db);   // "3 dB"
QString ratio(double ratio);        // "4.0 : 1"
QString quality(double q);          // "1.50"
QString delay(double ms);           // "2.50 ms"
QString distance(double ms);        // the way that sound travels in that time: "85.8 cm"
QString spokenDelay(double ms);     // both: "2.50 ms, 85.8 cm"
QString time(std::uint32_t ms);     // "45 ms", "1.24 s"
QString percent(double fraction);   // "45%"
QString formatHz(double hz);        // "999 Hz", "1.00k", "12.5k"
QString spokenHz(double hz);        // "12500 Hz"

}  // namespace Formats
