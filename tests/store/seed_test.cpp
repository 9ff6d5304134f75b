#include "store/csv.h"
#include "store/store.h"
#include "testsupport.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <gtest/gtest.h>

namespace lavra {
namespace {

// A new database holds every data line of the delivered files, no more and no fewer.
TEST(StartingRowsTest, EveryTableHoldsExactlyTheRowsOfItsDataFile)
{
    test::ScratchDatabase scratch;
    const QStringList arquivos
        = QDir(QStringLiteral(":/data")).entryList({ QStringLiteral("*.csv") }, QDir::Files);
    ASSERT_FALSE(arquivos.isEmpty());
    for (const QString& arquivo : arquivos) {
        QFile file(QStringLiteral(":/data/") + arquivo);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << arquivo.toStdString();
        const qsizetype linhas = parseCsv(QString::fromUtf8(file.readAll())).size() - 1;
        const QString tabela = arquivo.chopped(4);
        EXPECT_EQ(scratch.scalar(QStringLiteral("SELECT COUNT(*) FROM %1").arg(tabela)).toLongLong(), linhas)
            << tabela.toStdString();
    }
}

// The chart draws class n inside band n of the 0..6432 scale (MB at the bottom), and the bands of
// one indicator meet without a gap.
TEST(StartingRowsTest, ChartBandsLieInsideTheirBandAndFollowOnFromEachOther)
{
    constexpr double kFaixa = 6432.0 / 5;
    constexpr double kClasse = 1240;
    test::ScratchDatabase scratch;
    Store db(scratch.path());
    struct Linha {
        float inferior;
        float superior;
    };
    QMap<QString, QMap<int, Linha>> porIndicador;
    QStringList falhas;
    db.AbreTabela(QStringLiteral("SELECT * FROM Graf;"));
    for (; !db.rs.atEnd(); db.rs.moveNext()) {
        const QString chave = db.rs.value(0).toString();
        const int classe = chave.right(1).toInt();
        const double base = db.rs.value(1).toFloat();
        const Linha linha { db.rs.value(2).toFloat(), db.rs.value(3).toFloat() };
        if (classe < 1 || classe > 5 || base < (classe - 1) * kFaixa || base + kClasse > classe * kFaixa)
            falhas << chave + QStringLiteral(": outside its band");
        if (!(linha.superior > linha.inferior))
            falhas << chave + QStringLiteral(": upper limit not above the lower");
        porIndicador[chave.chopped(1)].insert(classe, linha);
    }
    db.fecha();
    for (auto it = porIndicador.cbegin(); it != porIndicador.cend(); ++it) {
        for (auto c = it->cbegin(); std::next(c) != it->cend(); ++c) {
            const auto seguinte = std::next(c);
            if (seguinte.key() != c.key() + 1 || seguinte->inferior != c->superior)
                falhas << QStringLiteral("%1%2 does not meet %1%3")
                              .arg(it.key())
                              .arg(c.key())
                              .arg(seguinte.key());
        }
    }
    EXPECT_FALSE(porIndicador.isEmpty());
    EXPECT_TRUE(falhas.isEmpty()) << falhas.join(QLatin1Char('\n')).toStdString();
}

} // namespace
} // namespace lavra
