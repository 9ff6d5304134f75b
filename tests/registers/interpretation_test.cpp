#include <gtest/gtest.h>

#include "registers/interpretation.h"

#include <ostream>

namespace lavra {
namespace {

// One row of the manual: the values are floats, as typed in the analysis, so a value right on a
// threshold must fall on it.
struct ClassRow {
    const char* tipo;
    float valor;
    float aux;
    Classe classe;
};

std::ostream& operator<<(std::ostream& out, const ClassRow& row)
{
    return out << row.tipo << " " << row.valor << " (aux " << row.aux << ") -> " << row.classe;
}

class InterpretaClasseTable : public ::testing::TestWithParam<ClassRow> {};

TEST_P(InterpretaClasseTable, GivesTheManualsClass)
{
    const ClassRow& row = GetParam();
    EXPECT_EQ(InterpretaClasse(row.valor, row.aux, QString::fromLatin1(row.tipo)), row.classe);
}

const ClassRow kRows[] = {
    {"pH", 5.0f, 0, 1}, {"pH", 5.4f, 0, 2}, {"pH", 6.0f, 0, 3}, {"pH", 6.01f, 0, 4},
    // Three classes only: nothing is ever very low or very high.
    {"Ca", 0.0f, 0, 2}, {"Ca", 2.0f, 0, 2}, {"Ca", 4.0f, 0, 3}, {"Ca", 4.01f, 0, 4}, {"Mg", 0.5f, 0, 2},
    {"Mg", 1.0f, 0, 3}, {"Mg", 1.1f, 0, 4}, {"MO", 2.5f, 0, 2}, {"MO", 5.0f, 0, 3}, {"MO", 5.1f, 0, 4},
    {"CTC", 5.0f, 0, 2}, {"CTC", 15.0f, 0, 3}, {"CTC", 15.01f, 0, 4}, {"CTC", 1000.0f, 0, 4},
    // The lowest bound of the saturations is strict.
    {"SatAl", 0.99f, 0, 1}, {"SatAl", 1.0f, 0, 2}, {"SatAl", 10.0f, 0, 2}, {"SatAl", 20.0f, 0, 3},
    {"SatAl", 20.01f, 0, 4}, {"SatBas", 44.99f, 0, 1}, {"SatBas", 45.0f, 0, 2}, {"SatBas", 64.0f, 0, 2},
    {"SatBas", 80.0f, 0, 3}, {"SatBas", 80.01f, 0, 4},
    // Potassium: the CTC in aux chooses the table.
    {"K", 15, 5.0f, 1}, {"K", 20, 5.0f, 2}, {"K", 15, 5.01f, 1}, {"K", 20, 5.01f, 1}, {"K", 90, 5.0f, 4},
    {"K", 91, 5.0f, 5}, {"K", 120, 15.0f, 4}, {"K", 121, 15.0f, 5}, {"K", 30, 15.01f, 1}, {"K", 60, 20.0f, 2},
    {"K", 180, 20.0f, 4}, {"K", 181, 20.0f, 5},
    // Phosphorus code digits: area (1 ordinary, 2 irrigated rice), method (1 Mehlich, 2 resin), clay class.
    {"P", 2, 111, 1}, {"P", 3, 111, 2}, {"P", 12, 111, 4}, {"P", 12.1f, 111, 5}, {"P", 3, 112, 1},
    {"P", 18, 112, 4}, {"P", 9, 112, 3}, {"P", 4, 113, 1}, {"P", 24, 113, 4}, {"P", 7, 114, 1},
    {"P", 42, 114, 4}, {"P", 42.1f, 114, 5},
    // Irrigated rice has no class 1, whatever the clay.
    {"P", 3, 211, 2}, {"P", 2, 211, 2}, {"P", 0, 214, 2}, {"P", 6, 212, 3}, {"P", 12, 213, 4}, {"P", 12.1f, 214, 5},
    // Resin ignores clay and area.
    {"P", 5, 121, 1}, {"P", 5, 124, 1}, {"P", 5, 221, 1}, {"P", 10, 124, 2}, {"P", 20, 122, 3},
    {"P", 40, 123, 4}, {"P", 40.1f, 121, 5},
    // Nothing matches.
    {"P", 5, 311, 0}, {"P", 5, 131, 0}, {"P", 5, 110, 0}, {"P", 5, 115, 0}, {"P", 5, 11, 0},
    {"P", 5, 1111, 0}, {"P", 5, 0, 0}, {"ph", 5, 0, 0}, {"Zn", 5, 0, 0}, {"", 5, 0, 0},
};

INSTANTIATE_TEST_SUITE_P(Manual, InterpretaClasseTable, ::testing::ValuesIn(kRows));

TEST(ClasseArgila, MostClayeyIsClassOne)
{
    const struct { float argila; Classe classe; } rows[] = {
        {0, 4}, {20, 4}, {20.1f, 3}, {40, 3}, {40.1f, 2}, {60, 2}, {60.1f, 1}, {100, 1}};
    for (const auto& row : rows)
        EXPECT_EQ(ClasseArgila(row.argila), row.classe) << "clay " << row.argila;
}

TEST(TextoClasse, LabelsOnlyTheFiveClasses)
{
    EXPECT_EQ(TextoClasse(1), "MB");
    EXPECT_EQ(TextoClasse(5), "MA");
    EXPECT_TRUE(TextoClasse(0).isEmpty());
    EXPECT_TRUE(TextoClasse(6).isEmpty());
}

TEST(SaturacaoAl, ConvertsPotassiumAndAvoidsDividingByNothing)
{
    EXPECT_FLOAT_EQ(SaturacaoAl(1, 0, 2, 1), 25.0f);
    EXPECT_FLOAT_EQ(SaturacaoAl(1, 399, 1, 1), 25.0f);
    EXPECT_EQ(SaturacaoAl(0, 0, 0, 0), 0.0f);
    EXPECT_EQ(SaturacaoAl(0, 0, 3, 1), 0.0f);
}

// The limits come from the manual's curves on the clay content; both are worked out here the same
// way, so that a content right on a limit is tested where it lies.
double phosphorusY1(double x) { return -4e-8 * x * x * x + 0.0026 * x * x - 0.435 * x + 23.982; }
double phosphorusY2(double x) { return -1e-8 * x * x * x + 0.0009 * x * x - 0.145 * x + 7.994; }

class DoseCorrecaoPhosphorus : public ::testing::TestWithParam<double> {};

TEST_P(DoseCorrecaoPhosphorus, RunsFromNinetyAtTheLowerLimitToNothingAtTheCriticalLevel)
{
    const double clay = GetParam();
    const double y1 = static_cast<float>(phosphorusY1(clay)); // held in single precision
    const double y2 = phosphorusY2(clay);
    EXPECT_EQ(DoseCorrecao(clay, y2, "P"), 90.0f);
    EXPECT_EQ(DoseCorrecao(clay, y1, "P"), 0.0f);
    EXPECT_EQ(DoseCorrecao(clay, y2 - 0.001, "P"), 120.0f);
    EXPECT_EQ(DoseCorrecao(clay, y1 + 0.001, "P"), 0.0f);
    EXPECT_NEAR(DoseCorrecao(clay, (y1 + y2) / 2, "P"), 45.0f, 1e-3);
}

// Clays of 15, 35 and 60 have a critical level whose float lies below the double.
INSTANTIATE_TEST_SUITE_P(Clays, DoseCorrecaoPhosphorus, ::testing::Values(0.0, 15.0, 35.0, 60.0));

TEST(DoseCorrecao, PotassiumIsAllOrNothingAndOnlyTheExactNamesCount)
{
    const double ctc = 10;
    const double y2 = 2.5376 * ctc + 37.105;
    EXPECT_EQ(DoseCorrecao(ctc, 0, "K"), 120.0f);
    EXPECT_EQ(DoseCorrecao(ctc, y2 - 0.001, "K"), 120.0f);
    EXPECT_EQ(DoseCorrecao(ctc, y2, "K"), 0.0f);
    EXPECT_EQ(DoseCorrecao(ctc, 200, "K"), 0.0f);
    // Only the exact names count.
    EXPECT_EQ(DoseCorrecao(10, 0, "k"), 0.0f);
    EXPECT_EQ(DoseCorrecao(30, 0, "p"), 0.0f);
    EXPECT_EQ(DoseCorrecao(30, 0, ""), 0.0f);
}

TEST(CorrecaoPorClasse, FollowsTheManual)
{
    EXPECT_EQ(CorrecaoPorClasse(2, 3), "sem#0#30");
    EXPECT_EQ(CorrecaoPorClasse(1, 4), "sem#0#0");
    EXPECT_TRUE(CorrecaoPorClasse(3, 1).isEmpty());
}

TEST(CorrecaoPorDose, SplitsByTheDoseRanges)
{
    const struct { int cultivo; float dose; const char* texto; } rows[] = {
        {1, 120, "2/3#80#120"},    {2, 120, "1/3#40#120"},
        {1, 99.9f, "2/3#66#99"},   {2, 99.9f, "1/3#33#99"},
        {1, 60, "2/3#40#60"},      {2, 60, "1/3#20#60"},
        {1, 59.9f, "todo#59#59"},  {2, 59.9f, "sem#0#59"},
        {1, 0.5f, "todo#0#0"},     {2, 0.5f, "sem#0#0"},
        {1, 0, "sem#0#0"},         {2, 0, "sem#0#0"},
        {1, 120.5f, ""},           {2, -1, ""},
        {3, 120, ""},              {0, 0, ""},
    };
    for (const auto& row : rows)
        EXPECT_EQ(CorrecaoPorDose(row.cultivo, row.dose), QString::fromLatin1(row.texto))
            << "cultivo " << row.cultivo << ", dose " << row.dose;
}

} // namespace
} // namespace lavra
