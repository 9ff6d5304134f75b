#include "app/session.h"
#include "base/validation.h"
#include "plan/finish.h"
#include "registers/analysis.h"
#include "store/database.h"
#include "testsupport.h"

#include <QDate>
#include <gtest/gtest.h>

using namespace lavra;

namespace {

// A soybean recommendation with commercial formulas, as the steps before the last leave it.
class FinishTest : public ::testing::Test {
protected:
    test::ScratchDatabase scratch;
    Session session{scratch.path()};

    void SetUp() override
    {
        session.limpaCalculo();
        session.Analise = QVector<QVariant>(36);
        session.Analise[0] = QStringLiteral("Fazenda Boa Vista/Gleba 3/15/08/2021");
        session.Analise[6] = 12.5f;
        session.Grupo = 1;
        session.PlanoNum = 1;
        // Crop, order, (date), yield; liming: material, PRNT text, R$/t, t/ha, R$/ha, t, R$; base formula likewise.
        const QVariant dados[] = {QStringLiteral("Soja"), QStringLiteral("Primeiro"), 0, 3.5f,
                                  QStringLiteral("Calcário dolomítico"), QStringLiteral("75"), 220.0f, 2.4f, 528.0f,
                                  2.4f * 12.5, 528.0 * 12.5, QStringLiteral("0-20-20"), 2915.0f, 300.0f, 874.5f,
                                  3750.0, 874.5 * 12.5};
        for (int slot = 1; slot <= 17; ++slot)
            session.Dados[slot] = dados[slot - 1];
        session.CustoCalcario = 528.0 * 12.5;
        session.CustoBase = 874.5 * 12.5;
        session.CustoN = 0.004;
        session.ObsAjuste = QStringLiteral("Necessidade ajustada pelo técnico");
    }
};

TEST_F(FinishTest, TotalAndKeyFollowThePlan)
{
    for (const bool comma : {true, false}) {
        test::MachineLocale locale(comma ? test::commaLocale() : test::pointLocale());
        session.Dados[3] = QStringLiteral("10/10/2021");
        Tabela_e_CalcCustTot(session, 1);
        EXPECT_EQ(session.TabelaReco, QStringLiteral("RecoForm"));
        EXPECT_EQ(session.UltimoSlot, 40);
        EXPECT_EQ(session.PlanoTexto, QStringLiteral("formulas"));
        EXPECT_EQ(session.Dados[40].toString(), comma ? QStringLiteral("17531,25") : QStringLiteral("17531.25"));
        EXPECT_EQ(session.CodCultivo, QStringLiteral("Soja-Primeiro-10/10/2021"));
    }
    // The forest plan adds its three applications instead of the base and the topdressing.
    test::MachineLocale point(test::pointLocale());
    session.Grupo = 4;
    session.CustoEtapa1 = 100;
    session.CustoEtapa2 = 20.5;
    session.CustoEtapa3 = 0.125;
    Tabela_e_CalcCustTot(session, 3);
    EXPECT_EQ(session.TabelaReco, QStringLiteral("RecoFlorest"));
    EXPECT_EQ(session.Dados[27].toString(), QStringLiteral("6720.63"));
    // A forest species without yield or order keeps the integer 0 of a fresh session in the key.
    session.Dados[2] = 0;
    Tabela_e_CalcCustTot(session, 3);
    EXPECT_EQ(session.CodCultivo, QStringLiteral("Soja-0-10/10/2021"));
}

TEST_F(FinishTest, TheSavedRowHoldsTheSlotsByColumnType)
{
    test::MachineLocale comma(test::commaLocale());
    ASSERT_FALSE(SalvaRecomendacao(session, QStringLiteral("10/10/2021")));

    Store db(scratch.path());
    db.AbreTabela(QStringLiteral("SELECT * FROM RecoForm;"));
    ASSERT_EQ(db.rs.recordCount(), 1);
    ASSERT_EQ(db.rs.columnCount(), 44);
    EXPECT_EQ(db.rs.value(0).toString(), QStringLiteral("Fazenda Boa Vista/Gleba 3/15/08/2021"));
    EXPECT_EQ(db.rs.value(1).toString(), QStringLiteral("Soja-Primeiro-10/10/2021"));
    EXPECT_EQ(db.rs.value(2).toString(), QStringLiteral("Soja"));
    EXPECT_EQ(db.rs.value(4).toDate(), QDate(2021, 10, 10));
    EXPECT_EQ(db.rs.value(5).toFloat(), 3.5f);
    EXPECT_EQ(db.rs.value(7).toFloat(), 75.0f);  // the PRNT text of the grid
    EXPECT_EQ(db.rs.value(11).toDouble(), static_cast<double>(2.4f * 12.5));
    EXPECT_EQ(db.rs.value(13).toString(), QStringLiteral("0-20-20"));
    // No topdressing: the nitrogen block keeps the zeros of a fresh session.
    EXPECT_EQ(db.rs.value(19).toString(), QStringLiteral("0"));
    for (int column = 20; column <= 40; ++column)
        EXPECT_EQ(db.rs.value(column).toDouble(), 0.0) << column;
    // The total passes through its "0.00" text: 17531.254 is kept as 17531.25.
    EXPECT_EQ(db.rs.value(41).toDouble(), 17531.25);
    EXPECT_EQ(db.rs.value(42).toString(), QStringLiteral("Necessidade ajustada pelo técnico"));
    EXPECT_TRUE(db.rs.value(43).toString().isEmpty());
    db.fecha();
}

TEST_F(FinishTest, RefusalsWriteNothing)
{
    EXPECT_EQ(SalvaRecomendacao(session, QStringLiteral("10/13/2021")), Desfecho::aviso(kMsgDataInvalida));
    EXPECT_EQ(SalvaRecomendacao(session, QStringLiteral("31/02/2021")),
              Desfecho::aviso(avisoDataInexistente(QStringLiteral("31/02/2021"))));
    EXPECT_EQ(scratch.scalar(QStringLiteral("SELECT COUNT(*) FROM RecoForm")).toInt(), 0);

    ASSERT_FALSE(SalvaRecomendacao(session, QStringLiteral("10/10/2021")));
    const Parada again = SalvaRecomendacao(session, QStringLiteral("10/10/2021"));
    EXPECT_EQ(again, Desfecho::aviso(mensagemRepetida(QStringLiteral("Soja-Primeiro-10/10/2021"),
                                                      QStringLiteral("Fazenda Boa Vista/Gleba 3/15/08/2021"))));
    EXPECT_TRUE(again->texto.endsWith(QStringLiteral("]\n\nEscolha uma outra data para o cadastro.")));
    EXPECT_FALSE(SalvaRecomendacao(session, QStringLiteral("11/10/2021")));
    EXPECT_EQ(scratch.scalar(QStringLiteral("SELECT COUNT(*) FROM RecoForm")).toInt(), 2);

    // The same key in another plan's table stands beside it.
    session.PlanoNum = 2;
    session.Dados[41] = 0;  // the note and the orientations of the formulas' layout
    session.Dados[42] = 0;
    EXPECT_FALSE(SalvaRecomendacao(session, QStringLiteral("10/10/2021")));
    EXPECT_EQ(scratch.scalar(QStringLiteral("SELECT COUNT(*) FROM RecoFormulac")).toInt(), 1);
}

} // namespace
