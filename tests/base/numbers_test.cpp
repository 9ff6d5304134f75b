#include "base/numbers.h"
#include "testsupport.h"

#include <gtest/gtest.h>

using namespace lavra;

namespace {

TEST(NumbersTest, WholeNumbersRoundHalfToEven)
{
    const std::pair<double, std::int64_t> cases[] = {{0.5, 0}, {1.5, 2}, {2.5, 2}, {3.5, 4},
                                                     {-0.5, 0}, {-1.5, -2}, {2.51, 3}, {-2.49, -2}};
    for (const auto& [value, expected] : cases)
        EXPECT_EQ(roundHalfEven(value), expected) << value;
}

// The platform's test takes a thousands separator; a reading never does, so that "1.5" on a comma
// machine is no number rather than fifteen, and "80,5" on a point machine no number rather than 805.
TEST(NumbersTest, ReadingRefusesThousandsSeparators)
{
    struct Case {
        QLocale locale;
        const char* text;
        std::optional<double> read;
        bool platformNumeric;
    };
    const Case cases[] = {
        {test::commaLocale(), "1.5", std::nullopt, true},   {test::commaLocale(), " 1.234,5 ", std::nullopt, true},
        {test::commaLocale(), "1,5", 1.5, true},            {test::commaLocale(), "1,5,5", std::nullopt, false},
        {test::pointLocale(), "80,5", std::nullopt, true},  {test::pointLocale(), "1,234.5", std::nullopt, true},
        {test::pointLocale(), "80.5", 80.5, true},          {test::pointLocale(), "abc", std::nullopt, false},
    };
    for (const Case& c : cases) {
        test::MachineLocale locale(c.locale);
        const QString text = QString::fromUtf8(c.text);
        SCOPED_TRACE(c.text);
        EXPECT_EQ(parseNumber(text), c.read);
        EXPECT_EQ(toNumber(QVariant(text)), c.read);
        EXPECT_EQ(isNumeric(QVariant(text)), c.read.has_value());
        EXPECT_EQ(isNumericText(text), c.platformNumeric);
    }
}

TEST(NumbersTest, TextIsReadUnderTheMachinesSetting)
{
    {
        test::MachineLocale comma(test::commaLocale());
        EXPECT_EQ(decimalSymbol(), QLatin1Char(','));
        EXPECT_EQ(parseNumber(QStringLiteral(" 1234,5 ")), 1234.5);
        EXPECT_EQ(parseNumber(QStringLiteral("-2,5e2")), -250.0);
        EXPECT_FALSE(parseNumber(QStringLiteral("1,5e")));
        EXPECT_EQ(numberText(0.1f), QStringLiteral("0,1"));
        EXPECT_EQ(variantNumberText(QVariant(10.1f)), QStringLiteral("10,1"));
        EXPECT_EQ(numberText(100000.0f), QStringLiteral("100000"));
        EXPECT_EQ(numberText(0.0005), QStringLiteral("0,0005"));
    }
    test::MachineLocale point(test::pointLocale());
    EXPECT_EQ(decimalSymbol(), QLatin1Char('.'));
    EXPECT_EQ(parseNumber(QStringLiteral("1234.5")), 1234.5);
    EXPECT_FALSE(parseNumber(QString()));
    EXPECT_FALSE(parseNumber(QStringLiteral("+")));
}

TEST(NumbersTest, SinglesWidenToTheirShortestDecimalForm)
{
    EXPECT_EQ(widenShortest(10.1f), 10.1);
    EXPECT_EQ(widenShortest(1.0f / 3.0f), 0.33333334);
    EXPECT_EQ(toSingle(widenShortest(1.0f / 3.0f)), 1.0f / 3.0f);
}

} // namespace
