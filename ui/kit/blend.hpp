#pragma once

#include <QColor>
#include <QRgb>

#include <array>
#include <cstddef>
#include <cstdint>

// Blending of pixels of 8 bits a colour, premultiplied. Two of the four channels are computed at a time, each
// in 16 bits.
namespace Paint {

constexpr std::uint32_t everyOther = 0x00ff00ff;
constexpr std::uint32_t halves = 0x00800080;  // of a level, to round to the nearest
constexpr std::uint32_t wholeOpacity = 256;

/// `above` over `below`.
constexpr QRgb over(QRgb below, QRgb above) {
    const auto scaled = [rest = 255 - (above >> 24)](std::uint32_t two) {
        const std::uint32_t product = two * rest;
        return (product + (product >> 8 & everyOther) + halves) >> 8 & everyOther;
    };
    return above + (scaled(below & everyOther) | scaled(below >> 8 & everyOther) << 8);
}

/// The same for a row of pixels. The compiler computes several of them at a time, which it does not within
/// the caller's loops.
inline void overRow(QRgb* below, const QRgb* above, int count) {
    for (int x = 0; x < count; ++x)
        below[x] = over(below[x], above[x]);
}

/// `part` in `wholeOpacity` of the way from one colour to another.
constexpr QRgb crossfade(QRgb start, QRgb end, std::uint32_t part) {
    const auto mixed = [part](std::uint32_t from, std::uint32_t to) {
        return (from * (wholeOpacity - part) + to * part + halves) >> 8 & everyOther;
    };
    const std::uint32_t redAndBlue = mixed(start & everyOther, end & everyOther);
    return redAndBlue | mixed(start >> 8 & everyOther, end >> 8 & everyOther) << 8;
}

/// A colour at each opacity, premultiplied.
using Shades = std::array<QRgb, 256>;

inline Shades shadesOf(const QColor& color) {
    Shades shades{};
    for (std::size_t opacity = 0; opacity < shades.size(); ++opacity)
        shades.at(opacity) = qPremultiply(
            qRgba(color.red(), color.green(), color.blue(), qRound(color.alphaF() * int(opacity))));
    return shades;
}

}  // namespace Paint
