#include "app/session.h"
#include "app/slots.h"
#include "plan/finish.h"
#include "plan/forest.h"
#include "plan/split.h"
#include "store/cursormodel.h"
#include "testsupport.h"

#include <gtest/gtest.h>

namespace lavra {
namespace {

using test::MachineLocale;

const QString kCabecalho
    = QStringLiteral("#Preço (R$/t)#Dosagem (kg/ha)#Custo (R$/ha)#Quantidade (kg)#Custo total (R$)");
const QString kTracos = QStringLiteral("---#---#---#---#---#---");

class ForestPlanTest : public ::testing::Test {
protected:
    ForestPlanTest()
        : session(scratch.path())
    {
        session.Analise = QVector<QVariant>(36, QVariant(0));
        session.Analise[0] = QStringLiteral("Santa Rita/Coxilha/15/08/2026");
        session.Analise[6] = QVariant(2.5f);
        session.Grupo = 4;
    }

    void necessidade(std::array<float, 9> valores)
    {
        for (std::size_t i = 0; i < valores.size(); ++i)
            session.NecFlorest[i] = QVariant(valores[i]);
    }

    static GradeFlorestal formula(const QString& nome)
    {
        return { (QStringLiteral("Fórmula") + kCabecalho).split(QLatin1Char('#')),
            { nome, "3547,5", "188", "666,93", "1880", "6669,3" } };
    }

    MachineLocale virgula { test::commaLocale() };
    test::ScratchDatabase scratch;
    Session session;
};

TEST_F(ForestPlanTest, TheButtonsOfADressingFollowItsNeed)
{
    necessidade({ 0, 0, 0, 30, 0, 0, 0, 0, 0 });
    // Planting offers both ways even with nothing to give.
    EXPECT_TRUE(opcoesDaEtapa(session, 1).habilitada);
    EXPECT_FALSE(opcoesDaEtapa(session, 1).fontesDeN);
    EXPECT_TRUE(opcoesDaEtapa(session, 2).fontesDeN);
    EXPECT_FALSE(opcoesDaEtapa(session, 3).habilitada);
    necessidade({ 0, 0, 0, 30, 0, 20, 0, 10, 0 });
    EXPECT_FALSE(opcoesDaEtapa(session, 2).fontesDeN);
    EXPECT_TRUE(opcoesDaEtapa(session, 3).habilitada);
    EXPECT_FALSE(opcoesDaEtapa(session, 3).fontesDeN);
}

TEST_F(ForestPlanTest, GridsGoToTheirBlocksAndAnEmptyOneIsDashed)
{
    session.Dados[60] = QStringLiteral("resto");
    GravaPlanoFlorestal(session, { formula("4-30-10"), GradeFlorestal {}, GradeFlorestal {} });
    EXPECT_EQ(session.Dados[12].toString(), QStringLiteral("Fórmula") + kCabecalho);
    EXPECT_EQ(session.Dados[13].toString(), QStringLiteral("4-30-10#3547,5#188#666,93#1880#6669,3"));
    EXPECT_EQ(session.Dados[17].toString(), QStringLiteral("Fontes") + kCabecalho);
    EXPECT_EQ(session.Dados[18].toString(), kTracos);
    EXPECT_EQ(session.Dados[22].toString(), QStringLiteral("Fontes") + kCabecalho);
    for (int s : { 14, 15, 16, 19, 20, 21, 24, 25, 26, 60, 100 })
        EXPECT_EQ(session.Dados[s], QVariant(0)) << s;
    EXPECT_EQ(session.JanelaAnterior, janela::kNPKFlorest);

    // A second pass rebuilds the slots from the grids as they are now.
    GradeFlorestal cinco = formula("20-5-20");
    cinco << QStringList { "Ureia", "3547,5", "22", "79", "220", "790" } << QStringList(6, "Nenhuma")
          << QStringList(6, "Nenhuma");
    GravaPlanoFlorestal(session, { GradeFlorestal {}, cinco, GradeFlorestal {} });
    EXPECT_EQ(session.Dados[13].toString(), kTracos);
    EXPECT_EQ(session.Dados[18].toString(), QStringLiteral("20-5-20#3547,5#188#666,93#1880#6669,3"));
    EXPECT_EQ(session.Dados[21].toString(), QStringLiteral("Nenhuma#Nenhuma#Nenhuma#Nenhuma#Nenhuma#Nenhuma"));
    EXPECT_EQ(session.Dados[14], QVariant(0));
}

TEST_F(ForestPlanTest, ASourceOfNitrogenAloneCostsTheDressing)
{
    session.EtapaFlorest = 2;
    const FonteNFlorestal r = GravaFonteNFlorestal(session, QStringLiteral("Ureia"), QVariant(3547.5f), "133");
    ASSERT_FALSE(r.recusa);
    ASSERT_EQ(r.linhas.size(), 2);
    EXPECT_EQ(r.linhas[0].join('#'), QStringLiteral("Fonte") + kCabecalho);
    // 133 kg/ha on 2,5 ha: 332,5 kg at 3547,5 R$/t.
    EXPECT_EQ(r.linhas[1].join('#'), QStringLiteral("Ureia#3547,5#133#471,8175#332,5#1179,54375"));
    EXPECT_DOUBLE_EQ(session.CustoEtapa2, 1179.54375);
    EXPECT_DOUBLE_EQ(session.CustoN, 1179.54375);
    EXPECT_EQ(session.CustoEtapa1, 0);

    // A source without N has no dose, and nothing changes.
    const FonteNFlorestal semDose = GravaFonteNFlorestal(session, QStringLiteral("Superfosfato"), 2145, {});
    ASSERT_TRUE(semDose.recusa);
    EXPECT_EQ(semDose.recusa->texto, kMsgSemDoseFonte);
    EXPECT_DOUBLE_EQ(session.CustoEtapa2, 1179.54375);

    // A plan opened afresh has empty grids, so no cost of an earlier one stays.
    AbrePlanoFlorestal(session);
    EXPECT_EQ(session.CustoEtapa2, 0);
}

TEST_F(ForestPlanTest, TheSavedRowColumnByColumn)
{
    session.Dados[slot::kCultura] = QStringLiteral("Pinus");
    session.Dados[slot::kCalcFonte] = QStringLiteral("Calcário dolomítico");
    session.PlanoNum = 3;
    session.CustoCalcario = 100.25;
    session.CustoEtapa1 = 6669.3;
    session.CustoEtapa3 = 0.5;
    session.ObsAjuste = QStringLiteral("ajustada");
    GravaPlanoFlorestal(session, { formula("4-30-10"), GradeFlorestal {}, GradeFlorestal {} });
    ASSERT_FALSE(SalvaRecomendacao(session, QStringLiteral("02/03/2027")));

    Store db(scratch.path());
    db.AbreTabela(QStringLiteral("SELECT * FROM RecoFlorest;"));
    ASSERT_EQ(db.rs.columnCount(), 31);
    QStringList cells;
    for (int c = 0; c < db.rs.columnCount(); ++c)
        cells << cellText(db.rs.value(c));
    db.fecha();
    EXPECT_EQ(cells.mid(0, 5),
        QStringList({ "Santa Rita/Coxilha/15/08/2026", "Pinus-0-02/03/2027", "Pinus", "0", "02/03/2027" }));
    EXPECT_EQ(cells.mid(13),
        QStringList({ "Fórmula" + kCabecalho, "4-30-10#3547,5#188#666,93#1880#6669,3", "0", "0", "0",
            "Fontes" + kCabecalho, kTracos, "0", "0", "0", "Fontes" + kCabecalho, kTracos, "0", "0", "0",
            "6770,05", "ajustada", "" }));
}

} // namespace
} // namespace lavra
