#pragma once

#include <QRgb>

#include <cstdint>

// Blending of single pixels of 8 bits a colour, premultiplied. Two colours are computed at a time.
namespace Paint {

constexpr std::uint32_t everyOther = 0x00ff00ff;
constexpr std::uint32_t wholeOpacity = 256;

/// Red and blue, or alpha and green, times `alpha` / 255, rounded to the nearest.
constexpr std::uint32_t scaledPair(std::uint32_t pair, std::uint32_t alpha) {
    const std::uint32_t product = pair * alpha + 0x00800080;
    return (product + (product >> 8 & everyOther)) >> 8 & everyOther;
}

/// `above` over `below`.
constexpr QRgb over(QRgb below, QRgb above) {
    const std::uint32_t through = 255 - (above >> 24);
    return above + scaledPair(below & everyOther, through) +
           (scaledPair(below >> 8 & everyOther, through) << 8);
}

/// Each of `count` pixels of `above` over one of `below`. Apart from loops with more to do, the compiler
/// computes several pixels at a time.
inline void overRow(QRgb* below, const QRgb* above, int count) {
    for (int x = 0; x < count; ++x)
        below[x] = over(below[x], above[x]);
}

/// `part` in `wholeOpacity` of the way from one colour to another.
constexpr QRgb crossfade(QRgb start, QRgb end, std::uint32_t part) {
    const auto mix = [part](std::uint32_t from, std::uint32_t to) {
        return (from * (wholeOpacity - part) + to * part + 0x00800080) >> 8 & everyOther;
    };
    return mix(start & everyOther, end & everyOther) | mix(start >> 8 & everyOther, end >> 8 & everyOther)
                                                           << 8;
}

}  // namespace Paint
