#include "calc/crops.h"
#include "store/store.h"
#include "testsupport.h"

#include <QHash>
#include <QSet>
#include <gtest/gtest.h>

namespace lavra {
namespace {

QString texto(const Consulta& consulta)
{
    return consulta.lida() ? consulta.tabela + QLatin1Char(':') + consulta.chave : QStringLiteral("-");
}

QStringList textos(const ChavesCultura& chaves)
{
    return { texto(chaves.n), texto(chaves.p), texto(chaves.k) };
}

// Column 0 of every table named, read the way the windows read it.
QHash<QString, QSet<QString>> chavesDasTabelas(Store& db, const QSet<QString>& tabelas)
{
    QHash<QString, QSet<QString>> chaves;
    for (const QString& tabela : tabelas) {
        db.AbreTabela(QStringLiteral("SELECT * FROM %1;").arg(tabela));
        for (; !db.rs.atEnd(); db.rs.moveNext())
            chaves[tabela].insert(db.rs.value(0).toString());
        db.fecha();
    }
    return chaves;
}

// Every key a window can form must find its row, and a key that must find none (the legumes'
// nitrogen) must not, or the window would overwrite the zero it wrote.
TEST(CropKeysTest, EveryKeyTheWindowsFormIsInTheData)
{
    test::ScratchDatabase scratch;
    Store db(scratch.path());
    const QList<ConsultaPossivel> consultas = consultasPossiveis();
    QSet<QString> tabelas;
    for (const ConsultaPossivel& c : consultas)
        tabelas.insert(c.tabela);
    const QHash<QString, QSet<QString>> chaves = chavesDasTabelas(db, tabelas);

    QStringList faltam;
    QStringList sobram;
    for (const ConsultaPossivel& c : consultas) {
        const bool existe = chaves.value(c.tabela).contains(c.chave);
        if (c.linhaEsperada && !existe)
            faltam << QStringLiteral("%1 %2 \"%3\"").arg(c.janela, c.tabela, c.chave);
        if (!c.linhaEsperada && existe)
            sobram << QStringLiteral("%1 %2 \"%3\"").arg(c.janela, c.tabela, c.chave);
    }
    EXPECT_TRUE(faltam.isEmpty()) << faltam.size() << " keys without a row:\n"
                                  << faltam.join(QLatin1Char('\n')).toStdString();
    EXPECT_TRUE(sobram.isEmpty()) << "rows that must not exist:\n"
                                  << sobram.join(QLatin1Char('\n')).toStdString();
    // The enumeration reaches every table of every crop window, the views of the medicinal tables
    // and the chart bands.
    EXPECT_EQ(tabelas.size(), 24);
}

struct CasoChaves {
    const char* caso;
    ChavesCultura obtidas;
    QStringList esperadas; // N, P, K as "table:key"
};

TEST(CropKeysTest, KeysFollowEachWindowsRules)
{
    test::MachineLocale local(test::commaLocale());
    const QString rs = QStringLiteral("Arroz irrigado (RS)");
    const QString sc = QStringLiteral("Arroz irrigado (SC)");
    const QList<CasoChaves> casos = {
        { "RS rice: increase as typed, first-crop tables, K split by CTC class 4",
            chavesGraos({ graos::ArrozIrrigadoRS, QStringLiteral("3"), {}, 4, 2 }),
            { "GRAON:" + rs + "3", "GRAOPC1:" + rs + "3", "GRAOKC1:" + rs + "23" } },
        { "RS rice on a CTC class 3", chavesGraos({ graos::ArrozIrrigadoRS, QStringLiteral("4"), {}, 3, 1 }),
            { "GRAON:" + rs + "4", "GRAOPC1:" + rs + "4", "GRAOKC1:" + rs + "14" } },
        // SC rice changes band above 9 t/ha: GrainsTest.NeedsFromTheManualRows.
        { "SC rice on a second crop", chavesGraos({ graos::ArrozIrrigadoSC, QStringLiteral("9,1"), {}, 2, 2 }),
            { "GRAON:" + sc + "2", "GRAOPC1:" + sc + "2", "GRAOKC1:" + sc + "2" } },
        { "maize after a mixture, second crop",
            chavesGraos({ graos::Milho, QStringLiteral("8"), QStringLiteral("Consórcio ou pousio"), 3, 2 }),
            { "GRAON:MilhoCP", "GRAOPC2:Milho", "GRAOKC2:Milho" } },
        { "wheat after legumes",
            chavesGraos({ graos::Trigo, QStringLiteral("3"), QStringLiteral("Leguminosas"), 3, 1 }),
            { "GRAON:TrigoL", "GRAOPC1:Trigo", "GRAOKC1:Trigo" } },
        { "potato grades only N", chavesHortalicas(hortalicas::Batata, 1, 3, 1),
            { "HORTN:Batata1", "HORTPC1:Batata", "HORTKC1:Batata" } },
        { "cassava on sandy soil", chavesHortalicas(hortalicas::Mandioca, -1, 4, 1),
            { "HORTN:Mandioca2", "HORTPC1:Mandioca", "HORTKC1:Mandioca2" } },
        { "cassava on clay class 3", chavesHortalicas(hortalicas::Mandioca, -1, 3, 2),
            { "HORTN:Mandioca1", "HORTPC2:Mandioca", "HORTKC2:Mandioca1" } },
        { "tomato of 75 t/ha", chavesHortalicas(hortalicas::Tomateiro, 2, 1, 2),
            { "HORTN:Tomateiro2", "HORTPC2:Tomateiro2", "HORTKC2:Tomateiro2" } },
        { "silage maize after fallow", chavesForrageiras(forrageiras::MilhoSilagem, 4, 1),
            { "FORRAGN:Milho silagem3", "FORRAGPC1:Milho silagem", "FORRAGKC1:Milho silagem" } },
        { "silage sorghum keeps its key", chavesForrageiras(forrageiras::SorgoSilagem, 2, 2),
            { "FORRAGN:Sorgo silagem", "FORRAGPC2:Sorgo silagem", "FORRAGKC2:Sorgo silagem" } },
        { "grass introduction reads no N", chavesForrageiras(forrageiras::PastagensGramineas, 1, 1),
            { "-", "FORRAGPC1:Pastagens naturais com introdução de gramíneas",
                "FORRAGKC1:Pastagens naturais com introdução de gramíneas" } },
        { "ratoon cane, 50 a 80", chavesCana(cana::CanaSoca, 2),
            { "HORTN:Cana-soca2", "HORTPC1:Cana-soca2", "HORTKC1:Cana-soca2" } },
        { "plant cane has one N row", chavesCana(cana::CanaPlanta, 3),
            { "HORTN:Cana-planta", "HORTPC1:Cana-planta3", "HORTKC1:Cana-planta3" } },
        { "medicinal after a second crop", chavesCondimentares(9, QStringLiteral("2")),
            { "CONDMEDN:Curcuma", "CONDMEDP2:Curcuma", "CONDMEDK2:Curcuma" } },
    };
    for (const CasoChaves& caso : casos)
        EXPECT_EQ(textos(caso.obtidas), caso.esperadas) << caso.caso;

    const std::pair<double, const char*> ervaMate[]
        = { { 5.9, "Erva-Mate1" }, { 6, "Erva-Mate2" }, { 12, "Erva-Mate2" }, { 12.1, "Erva-Mate3" } };
    for (const auto& [rendimento, chave] : ervaMate)
        EXPECT_EQ(chaveFlorestal(florestais::ErvaMate, rendimento).chave, QString::fromUtf8(chave))
            << rendimento;
    EXPECT_EQ(chaveFlorestal(4, 20).chave, QStringLiteral("Eucalipto"));
}

// Columns of the analysis record that make a key: 18 clay, 21 method of P, 22 use of the area,
// 27.. the classes.
QVector<QVariant> analise(float argila, int metodo, int uso, int classeP, int classeK, int classeCtc)
{
    QVector<QVariant> a(36, QVariant(0));
    a[18] = argila;
    a[21] = metodo;
    a[22] = uso;
    a[27] = 2.0f; // pH
    a[31] = classeP;
    a[32] = classeK;
    a[33] = classeCtc;
    a[35] = 3; // saturation by bases
    return a;
}

TEST(ChartKeysTest, PhosphorusAndPotassiumKeysDependOnTheAnalysis)
{
    const struct {
        QVector<QVariant> analise;
        const char* p;
        const char* k;
    } casos[] = {
        { analise(50, 1, 1, 3, 4, 3), "PCT23", "K34" }, { analise(20, 1, 1, 5, 1, 2), "PCT45", "K21" },
        { analise(60.1f, 1, 1, 1, 5, 4), "PCT11", "K45" },
        { analise(20, 1, 2, 4, 2, 3), "PA4", "K32" }, // flooded rice: clay does not count
        { analise(20, 2, 1, 1, 3, 3), "PR1", "K33" },
        { analise(20, 0, 1, 0, 0, 0), "0", "K00" }, // no method: nothing in Graf answers
    };
    for (const auto& caso : casos) {
        EXPECT_EQ(chaveGraf(IndicadorGraf::P, caso.analise), QString::fromLatin1(caso.p));
        EXPECT_EQ(chaveGraf(IndicadorGraf::K, caso.analise), QString::fromLatin1(caso.k));
    }
    EXPECT_EQ(chaveGraf(IndicadorGraf::pH, casos[0].analise), QStringLiteral("pH2"));
    EXPECT_EQ(chaveGraf(IndicadorGraf::SatB, casos[0].analise), QStringLiteral("SatB3"));
}

} // namespace
} // namespace lavra
