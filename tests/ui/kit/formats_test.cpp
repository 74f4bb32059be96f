#include "ui/kit/formats.hpp"

#include <gtest/gtest.h>

#include <QLocale>

#include <clocale>

namespace {

TEST(FormatsTest, KeepTheirDecimalPointInBrazil) {
    using namespace Formats;
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Portuguese, QLocale::Brazil));
    for (const char* const name : {"pt_BR.UTF-8", "pt_BR", "de_DE.UTF-8", "fr_FR.UTF-8"})
        if (std::setlocale(LC_ALL, name)) break;
    const std::pair<QString, const char*> cases[] = {
        {decibels(-3.26), "-3.3 dB"},   {decibels(-0.04), "0.0 dB"},
        {signedDecibels(0), "+0.0 dB"}, {signedDecibels(-12), "-12.0 dB"},
        {wholeDecibels(30), "30 dB"},   {ratio(4), "4.0 : 1"},
        {quality(0.3), "0.30"},         {delay(2.5), "2.50 ms"},
        {distance(5), "171.5 cm"},      {time(999), "999 ms"},
        {time(1000), "1.00 s"},         {time(1240), "1.24 s"},
        {percent(0.45), "45%"},         {formatHz(999.6), "1000 Hz"},
        {formatHz(1000), "1.00k"},      {formatHz(9999), "10.00k"},
        {formatHz(12500), "12.5k"}};
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(text, expected);
    std::setlocale(LC_ALL, "C");
    QLocale::setDefault(before);
}

}  // namespace
