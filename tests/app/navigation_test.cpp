#include "app/navigation.h"
#include "store/storeerror.h"
#include "testsupport.h"

#include <gtest/gtest.h>

using namespace lavra;

namespace {

using test::FakeHost;

const QStringList kChain = {"frmLavra",      "frmCliAn",    "frmGrupCult", "frmCalagem",     "frmGraos",
                            "frmNPK",        "frmFormulação", "frmParcelaN", "frmFinalCalculo", "frmCadCli"};

class NavigationTest : public ::testing::Test {
protected:
    Session session;
    FakeHost host;
    void SetUp() override { host.open = kChain; }
};

TEST_F(NavigationTest, ClosingRoutinesCloseExactlyTheirWindowsAndSetTheLock)
{
    struct Case {
        std::function<void()> run;
        QStringList left;
    };
    const std::vector<Case> cases = {
        {[&] { FechaJanelas(session, host, false); }, {"frmLavra"}},
        {[&] { FechaAposEscolha(session, host); }, {"frmLavra", "frmCliAn", "frmGrupCult"}},
        {[&] { FechaPlano(session, host); },
         {"frmLavra", "frmCliAn", "frmGrupCult", "frmCalagem", "frmGraos", "frmCadCli"}},
        {[&] { FechaJanela(session, host, QStringLiteral("frmGraos")); },
         {"frmLavra", "frmCliAn", "frmGrupCult", "frmCalagem", "frmNPK", "frmFormulação", "frmParcelaN",
          "frmFinalCalculo", "frmCadCli"}},
    };
    for (const Case& c : cases) {
        host.open = kChain;
        session.BloqueiaFechar = false;
        c.run();
        EXPECT_EQ(host.open, c.left);
        EXPECT_TRUE(session.BloqueiaFechar);
    }
}

TEST_F(NavigationTest, AnsweringNoToTheCancelQuestionChangesNothing)
{
    session.BloqueiaFechar = false;
    session.Dados[5] = QStringLiteral("Calcário");
    host.answer = false;
    EXPECT_FALSE(FechaJanelas(session, host, true));
    EXPECT_EQ(host.questions, 1);
    EXPECT_EQ(host.open, kChain);
    EXPECT_FALSE(session.BloqueiaFechar);
    EXPECT_EQ(session.Dados[5].toString(), QStringLiteral("Calcário"));

    host.answer = true;
    EXPECT_TRUE(FechaJanelas(session, host, true));
    EXPECT_EQ(host.open, QStringList{"frmLavra"});
}

TEST_F(NavigationTest, ReabreJanelaOnlyWithReabre)
{
    ReabreJanela(session, host, QStringLiteral("frmNPK"), QStringLiteral("outra"));
    EXPECT_EQ(host.open, kChain);
    EXPECT_TRUE(host.shown.isEmpty());
    ReabreJanela(session, host, QStringLiteral("frmNPK"), QStringLiteral("reabre"));
    EXPECT_EQ(host.open.last(), QStringLiteral("frmNPK"));
    EXPECT_EQ(host.shown, QStringList{"frmNPK"});
}

TEST_F(NavigationTest, StartingACalculationClearsTheSessionWithoutAsking)
{
    session.Dados[12] = QStringLiteral("05-20-20");
    session.CustoBase = 120.5;
    session.CustoEtapa3 = 7;
    IniciaCalculo(session, host);
    EXPECT_EQ(host.questions, 0);
    EXPECT_EQ(host.open, QStringList{"frmLavra"});
    EXPECT_EQ(session.ModoEscolha, QStringLiteral("Calcular"));
    EXPECT_EQ(session.TipoPlano, QStringLiteral("Fórmulas"));
    ASSERT_EQ(session.Dados.size(), 101);
    for (const QVariant& slot : session.Dados) {
        EXPECT_EQ(slot.typeId(), QMetaType::Int);
        EXPECT_EQ(slot.toInt(), 0);
    }
    EXPECT_EQ(session.CustoBase, 0.0);
    EXPECT_EQ(session.CustoEtapa3, 0.0);
    EXPECT_TRUE(session.BloqueiaFechar);
}

TEST(CarregaRecomendacaoTest, ColumnsFillTheSlotsAndTheKeyIsText)
{
    test::ScratchDatabase scratch;
    scratch.exec(QStringLiteral(
        "INSERT INTO RecoForm (CodAnalise, CodCultivo, Cultura, CultivoOrdem, DataPlantio, Expectativa, CustoTotal) "
        "VALUES ('D''Ávila/1/01/02/2021', 'Milho-Primeiro-10/10/2021', 'Milho', 'Primeiro', '2021-10-10', 9, 1234.5)"));
    Session session(scratch.path());
    CarregaRecomendacao(session, QStringLiteral("RecoForm"), QStringLiteral("D'Ávila/1/01/02/2021"),
                        QStringLiteral("Milho-Primeiro-10/10/2021"));
    EXPECT_EQ(session.Dados[0].toString(), QStringLiteral("Milho-Primeiro-10/10/2021"));
    EXPECT_EQ(session.CodCultivo, QStringLiteral("Milho-Primeiro-10/10/2021"));
    EXPECT_EQ(session.Dados[1].toString(), QStringLiteral("Milho"));
    EXPECT_EQ(session.Dados[4].toFloat(), 9.0f);
    EXPECT_EQ(session.Dados[40].toDouble(), 1234.5);
    EXPECT_FALSE(session.db.cn.isOpen());

    EXPECT_THROW(CarregaRecomendacao(session, QStringLiteral("RecoForm"), QStringLiteral("x"), QStringLiteral("y")),
                 StoreError);
    EXPECT_FALSE(session.db.cn.isOpen());
}

} // namespace
