#include "calc/smp.h"
#include "store/csv.h"
#include "store/store.h"
#include "testsupport.h"

#include <QFile>
#include <QHash>
#include <gtest/gtest.h>

#include <tuple>

namespace lavra {
namespace {

// The rows of the data file by the index as written there ("4.4"), to check the lookup against.
QHash<QString, QStringList> linhasSmp()
{
    QFile file(QStringLiteral(":/data/SMP.csv"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QHash<QString, QStringList> linhas;
    for (const QStringList& registro : parseCsv(QString::fromUtf8(file.readAll())).mid(1))
        linhas.insert(registro.value(0), registro);
    return linhas;
}

class SmpLookupTest : public ::testing::TestWithParam<std::tuple<bool, ComparacaoSmp>> {
protected:
    QLocale local() const { return std::get<0>(GetParam()) ? test::commaLocale() : test::pointLocale(); }
    ComparacaoSmp comparacao() const { return std::get<1>(GetParam()); }

    test::ScratchDatabase scratch;
    Store db { scratch.path() };
};

// Every index an analysis can hold from 4.2 to 7.1 finds the row of its own value, the ones below
// 4.4 that of 4.4, in all three columns; above the table, or between its rows, nothing.
TEST_P(SmpLookupTest, EveryIndexOfTheTableFindsItsRow)
{
    test::MachineLocale machine(local());
    const QHash<QString, QStringList> linhas = linhasSmp();
    for (int decimos = 42; decimos <= 71; ++decimos) {
        const float indiceSmp = toSingle(decimos / 10.0);
        const int linha = std::max(decimos, 44);
        const QStringList esperada = linhas.value(QStringLiteral("%1.%2").arg(linha / 10).arg(linha % 10));
        ASSERT_EQ(esperada.size(), 6) << "no data row for " << linha;
        for (int indice = 1; indice <= 3; ++indice) {
            const std::optional<float> s = consultaSmp(db, indiceSmp, indice, comparacao());
            ASSERT_TRUE(s.has_value()) << decimos << " column " << indice;
            EXPECT_EQ(*s, esperada[indice].toFloat()) << decimos << " column " << indice;
        }
    }
    EXPECT_FALSE(consultaSmp(db, 7.2f, 2, comparacao()).has_value());
    EXPECT_FALSE(consultaSmp(db, 5.45f, 2, comparacao()).has_value());
    EXPECT_FALSE(db.rs.isOpen());
    EXPECT_FALSE(db.cn.isOpen());
}

INSTANTIATE_TEST_SUITE_P(BothLocalesBothMethods, SmpLookupTest,
    ::testing::Combine(::testing::Bool(), ::testing::Values(ComparacaoSmp::Texto, ComparacaoSmp::Numerica)));

} // namespace
} // namespace lavra
