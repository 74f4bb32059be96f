#include "ui/kit/formats.hpp"

#include <gtest/gtest.h>

#include <QLocale>

#include <clocale>

namespace {

void expectPoints() {
    using namespace Formats;
    const struct {
        QString text;
        const char* expected;
    } cases[] = {
        {decibels(-3.26), "-3.3 dB"}, {signedDecibels(0), "+0.0 dB"}, {signedDecibels(-12), "-12.0 dB"},
        {wholeDecibels(30), "30 dB"}, {ratio(4), "4.0 : 1"},          {delay(2.5), "2.50 ms"},
        {distance(5), "171.5 cm"},    {time(999), "999 ms"},          {time(1000), "1.00 s"},
        {time(1240), "1.24 s"},       {percent(0.45), "45%"},         {formatHz(999.6), "1000 Hz"},
        {formatHz(1000), "1.00k"},    {formatHz(9999), "10.00k"},     {formatHz(12500), "12.5k"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.text, c.expected);
}

TEST(FormatsTest, KeepTheirDecimalPointInBrazil) {
    expectPoints();
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Portuguese, QLocale::Brazil));
    for (const char* const name : {"pt_BR.UTF-8", "pt_BR", "de_DE.UTF-8", "fr_FR.UTF-8"})
        if (std::setlocale(LC_ALL, name)) break;
    expectPoints();
    std::setlocale(LC_ALL, "C");
    QLocale::setDefault(before);
}

}  // namespace
