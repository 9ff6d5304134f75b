#include "base/validation.h"
#include "testsupport.h"

#include <gtest/gtest.h>

using namespace lavra;

namespace {

// Entries are written as a point machine shows them; a comma machine gets them with the two symbols
// swapped.
QString swapped(const char* text)
{
    QString s = QString::fromUtf8(text);
    for (QChar& c : s) {
        if (c == QLatin1Char(','))
            c = QLatin1Char('.');
        else if (c == QLatin1Char('.'))
            c = QLatin1Char(',');
    }
    return s;
}

class BothSymbols : public ::testing::TestWithParam<bool> {
protected:
    bool comma() const { return GetParam(); }
    QString typed(const char* text) const { return comma() ? swapped(text) : QString::fromUtf8(text); }
    test::MachineLocale locale{GetParam() ? test::commaLocale() : test::pointLocale()};
};

struct NumberCase {
    const char* point;
    bool invalid;
    bool cleared;
    int symbolBoxes;
};

TEST_P(BothSymbols, OnlyDigitsAndTheMachinesSymbolPass)
{
    const NumberCase cases[] = {
        {"", false, false, 0},     {"12", false, false, 0},    {"1.5", false, false, 0},
        {".5", false, false, 0},   {"12a", true, true, 0},     {"1.5.5", true, true, 0},
        {"-5", true, false, 1},    {"1,5", true, false, 1},    {"-1,5", true, false, 2},
        {"1.5e3", true, false, 1}, {"1,000.5", true, false, 1}, {"abc", true, true, 0},
    };
    for (const NumberCase& c : cases) {
        const QString text = typed(c.point);
        const NumberCheck check = ValidaNumero(text);
        SCOPED_TRACE(text.toStdString());
        EXPECT_EQ(check.invalid, c.invalid);
        EXPECT_EQ(check.clearField, c.cleared);
        const QStringList expected = (c.cleared ? QStringList{kMsgValorInvalido} : QStringList())
            + QStringList(c.symbolBoxes, kMsgSimboloDecimal);
        EXPECT_EQ(check.messages, expected);
    }
}

// Bounds of one quantity of each kind. Zero passes everywhere and a negative number nowhere.
struct RangeCase {
    Grandeza grandeza;
    const char* highest;
    const char* above;
    const char* message;
};

TEST_P(BothSymbols, QuantitiesHaveTheirBounds)
{
    const RangeCase cases[] = {
        {Grandeza::PH, "14", "14.01", "O pH deve estar entre 0 e 14."},
        {Grandeza::Ca, "200", "200.1", "O cálcio (Ca) deve estar entre 0 e 200 cmolc/dm³."},
        {Grandeza::MO, "100", "100.1", "A matéria orgânica (MO) deve estar entre 0 e 100 %."},
        {Grandeza::Fosforo, "10000", "10000.5", "O fósforo (P) deve estar entre 0 e 10000 mg/dm³."},
        {Grandeza::TeorN, "100", "100.5", "O teor de N deve estar entre 0 e 100 %."},
        {Grandeza::IndiceEficiencia, "1", "1.01", "O índice de eficiência deve estar entre 0 e 1."},
        {Grandeza::PRNT, "250", "250.5", "O PRNT deve estar entre 0 e 250 %."},
        {Grandeza::PrecoDolar, "100000", "100001", "O preço deve estar entre 0 e 100000 US$/t."},
        {Grandeza::Cotacao, "1000", "1001", "A cotação do dólar deve estar entre 0 e 1000 reais."},
        {Grandeza::Expectativa, "1000", "1000.5", "A expectativa de rendimento deve estar entre 0 e 1000 t/ha."},
        {Grandeza::MassaSeca, "1000", "1001",
         "A produção de massa seca do cultivo anterior deve estar entre 0 e 1000 t/ha."},
        {Grandeza::NecNBase, "2000", "2000.5", "O N base deve estar entre 0 e 2000 kg/ha."},
    };
    for (const RangeCase& c : cases) {
        SCOPED_TRACE(c.message);
        const QString message = QString::fromUtf8(c.message);
        EXPECT_EQ(VerificaFaixa(c.grandeza, QStringLiteral("0")), std::nullopt);
        EXPECT_EQ(VerificaFaixa(c.grandeza, typed(c.highest)), std::nullopt);
        EXPECT_EQ(VerificaFaixa(c.grandeza, typed(c.above)), message);
        EXPECT_EQ(VerificaFaixa(c.grandeza, typed("-0.5")), message);
        EXPECT_EQ(RecusaValor(c.grandeza, typed("1e30")), message);
    }
}

// What Executar and Calcular refuse: ValidaNumero's first box before any bound, so a sign or a
// thousands separator is told as a symbol; then the bounds.
TEST_P(BothSymbols, FieldsAreRefusedByTheFieldCheckBeforeTheirBounds)
{
    const QString ph = QStringLiteral("O pH deve estar entre 0 e 14.");
    const std::pair<const char*, std::optional<QString>> cases[] = {
        {"", std::nullopt},          {"6.5", std::nullopt},         {"14.5", ph},
        {"999999999999", ph},        {"-5", kMsgSimboloDecimal},    {"1,5", kMsgSimboloDecimal},
        {"1e30", kMsgSimboloDecimal}, {"12a", kMsgValorInvalido},
    };
    for (const auto& [text, refusal] : cases) {
        EXPECT_EQ(RecusaNumero(typed(text), Grandeza::PH), refusal) << text;
        // Without bounds only the field check speaks.
        EXPECT_EQ(RecusaNumero(typed(text)), refusal == ph ? std::nullopt : refusal) << text;
    }
    // A box that only the platform's test has passed: its thousands separator is still refused.
    EXPECT_EQ(RecusaValor(Grandeza::NecNBase, typed("1,5")), kMsgSimboloDecimal);
    EXPECT_EQ(RecusaValor(Grandeza::NecNBase, typed("-5")), QStringLiteral("O N base deve estar entre 0 e 2000 kg/ha."));
    EXPECT_EQ(RecusaValor(Grandeza::NecNBase, typed("80.5")), std::nullopt);
}

TEST(ValidaDataTest, Boundaries)
{
    const std::pair<const char*, bool> cases[] = {
        {"0101200", false},  {"01012000", true}, {"00102000", false}, {"10002000", false},
        {"10101899", false}, {"31122100", true}, {"01012101", false}, {"32012000", false},
        {"01132000", false}, {"31022010", true}, {"01011900", true},  {"ab012000", false},
    };
    for (const auto& [digits, accepted] : cases)
        EXPECT_EQ(ValidaData(QString::fromLatin1(digits)), accepted) << digits;
}

TEST_P(BothSymbols, WarnsStrictlyAboveFiveHundred)
{
    EXPECT_FALSE(AvisaValorElevado(QStringLiteral("500")));
    EXPECT_EQ(AvisaValorElevado(typed("500.01")), kMsgValorElevado);
    EXPECT_EQ(AvisaValorElevado(5000), kMsgValorElevado);
    EXPECT_FALSE(AvisaValorElevado(QString()));
    EXPECT_FALSE(AvisaValorElevado(QStringLiteral("muito")));
}

TEST_P(BothSymbols, FormataNumeroPatterns)
{
    struct Case {
        QVariant value;
        int casas;
        const char* point;
    };
    const Case cases[] = {
        {2.675f, 2, "2.68"},        {0.125, 2, "0.13"},   {1.005, 2, "1.01"},  {1234.5, 0, "1235"},
        {2.5, 0, "3"},              {-1.25, 1, "-1.3"},   {7, 2, "7.00"},      {0.004, 2, "0.00"},
        {QStringLiteral("---"), 2, "---"}, {3.14159, 3, ""}, {99.999, 2, "100.00"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(FormataNumero(c.value, c.casas), typed(c.point)) << c.point;
    EXPECT_EQ(FormataNumero(typed("1.5"), 2), typed("1.50"));
}

INSTANTIATE_TEST_SUITE_P(Locales, BothSymbols, ::testing::Values(true, false),
                         [](const auto& info) { return info.param ? "Comma" : "Point"; });

} // namespace
