#include "app/session.h"
#include "app/slots.h"
#include "calc/crops.h"
#include "calc/forest.h"
#include "testsupport.h"

#include <gtest/gtest.h>

namespace lavra {
namespace {

using test::MachineLocale;

// The forest species against the shipped rows of FLOREST.
class ForestTest : public ::testing::Test {
protected:
    ForestTest()
        : session(scratch.path())
    {
        classes(3, 3, 4);
    }

    void classes(float mo, float p, float k) { session.Analise = test::analiseComClasses(mo, p, k); }

    QStringList calcula(int posicao, const QString& expectativa = {})
    {
        const CalculoFlorestal r = CalculaFlorestais(session.db, session, posicao, expectativa);
        if (r.desfecho)
            return { r.desfecho->texto };
        return QStringList(r.nec.begin(), r.nec.end());
    }

    MachineLocale virgula { test::commaLocale() };
    test::ScratchDatabase scratch;
    Session session;
    test::FakeHost host;
};

constexpr int kAcacia = 0;
constexpr int kEucalipto = 4;
constexpr int kPinus = 5;

TEST_F(ForestTest, NineBoxesFromTheClassColumns)
{
    struct Caso {
        int posicao;
        float mo, p, k;
        QStringList nec; // Plantio N P K, Cobertura N P K, Reposição N P K
    };
    const QList<Caso> casos = {
        // Organic matter class 2 reads columns 1, 4 and 7; P and K class 1 the first of theirs.
        { kEucalipto, 2, 1, 1, { "25", "120", "50", "40", "0", "60", "30", "60", "60" } },
        { kEucalipto, 3, 3, 4, { "15", "60", "15", "30", "0", "20", "20", "30", "20" } },
        { kEucalipto, 4, 5, 5, { "10", "30", "0", "20", "0", "0", "10", "0", "0" } },
        { kAcacia, 3, 2, 3, { "0", "40", "20", "0", "0", "0", "0", "30", "10" } },
        { kPinus, 4, 1, 2, { "0", "60", "20", "0", "0", "0", "0", "30", "20" } },
    };
    for (const Caso& c : casos) {
        classes(c.mo, c.p, c.k);
        EXPECT_EQ(calcula(c.posicao), c.nec) << c.posicao << " " << c.mo << " " << c.p << " " << c.k;
    }
    // No column feeds P in topdressing: every species shows 0, even at the poorest classes.
    classes(2, 1, 1);
    for (int posicao = 0; posicao < culturasFlorestais().size(); ++posicao)
        EXPECT_EQ(calcula(posicao, QStringLiteral("8")).value(kBoxPCobertura), QStringLiteral("0")) << posicao;
}

TEST_F(ForestTest, ErvaMateReadsTheRowOfItsYieldBand)
{
    // N in replacement, class 3 of organic matter: 45, 100 and 165 kg/ha in the three rows.
    const QList<std::pair<QString, QString>> casos
        = { { "5,9", "45" }, { "6", "100" }, { "12", "100" }, { "12,1", "165" } };
    for (const auto& [expectativa, nReposicao] : casos)
        EXPECT_EQ(calcula(florestais::ErvaMate, expectativa).value(6), nReposicao) << expectativa.toStdString();
}

TEST_F(ForestTest, RefusalsComeBeforeAnyBoxIsTouched)
{
    EXPECT_EQ(calcula(-1), QStringList({ kMsgSelecioneCultura }));
    EXPECT_EQ(calcula(florestais::ErvaMate), QStringList({ kMsgInformeExpectativa }));
    // A yield typed with the other decimal symbol is no number here.
    EXPECT_EQ(calcula(florestais::ErvaMate, QStringLiteral("6.5")), QStringList({ kMsgExpectativaInvalida }));
    EXPECT_EQ(session.RefazPlano, 0);
}

TEST_F(ForestTest, AMissingRowOrClassEmptiesEveryBoxAndIsTold)
{
    session.ObsAjuste = QStringLiteral("nota");
    scratch.exec(QStringLiteral("DELETE FROM FLOREST WHERE Chave = 'Pinus'"));
    CalculoFlorestal r = CalculaFlorestais(session.db, session, kPinus, {});
    ASSERT_TRUE(r.desfecho);
    EXPECT_TRUE(r.desfecho->texto.contains(QStringLiteral("\"Pinus\"")));
    EXPECT_TRUE(r.substituiResultado);
    EXPECT_EQ(r.nec, TextosNecFlorest {});

    // Organic matter class 5 has no column: read as ordinal 4, it would be N in topdressing.
    classes(5, 3, 3);
    r = CalculaFlorestais(session.db, session, kEucalipto, {});
    ASSERT_TRUE(r.desfecho);
    EXPECT_EQ(r.desfecho->tipo, TipoDesfecho::Critico);
    EXPECT_EQ(r.nec, TextosNecFlorest {});
    // Nothing was calculated, so the plan and the note stand.
    EXPECT_EQ(session.RefazPlano, 0);
    EXPECT_EQ(session.ObsAjuste, QStringLiteral("nota"));

    classes(3, 3, 3);
    calcula(kEucalipto);
    EXPECT_EQ(session.RefazPlano, 1);
    EXPECT_TRUE(session.ObsAjuste.isEmpty());
}

TEST_F(ForestTest, GoingOnWritesTheSpeciesTheNeedAndThePlan)
{
    for (const QLocale& locale : { test::commaLocale(), test::pointLocale() }) {
        MachineLocale maquina(locale);
        const QString decimal = locale.decimalPoint();
        session.Dados[slot::kExpectativa] = QVariant(3.5f);
        TextosNecFlorest nec = { "15", "60", "15", "30", "0", "20", "20", "30", "2" + decimal + "5" };

        // The eucalyptus has no yield: the slot keeps what it held.
        ASSERT_FALSE(ProssegueFlorestais(session, host, kEucalipto, QStringLiteral("Não requer"), nec));
        EXPECT_EQ(session.Dados[slot::kCultura].toString(), QStringLiteral("Eucalipto"));
        EXPECT_EQ(session.Dados[slot::kExpectativa], QVariant(3.5f));
        EXPECT_EQ(session.NecFlorest[8], QVariant(2.5f));
        EXPECT_EQ(session.NecFlorest[8].typeId(), QMetaType::Float);
        EXPECT_EQ(session.PlanoNum, 3);

        ASSERT_FALSE(ProssegueFlorestais(session, host, florestais::ErvaMate, "12" + decimal + "5", nec));
        EXPECT_EQ(session.Dados[slot::kExpectativa], QVariant(12.5f));

        // A box without a number stops everything before a slot is written.
        session.PlanoNum = 0;
        nec[5] = QStringLiteral("abc");
        const Parada recusa = ProssegueFlorestais(session, host, kPinus, {}, nec);
        ASSERT_TRUE(recusa);
        EXPECT_EQ(recusa->texto, kMsgResultadoIncompleto);
        EXPECT_EQ(session.Dados[slot::kCultura].toString(), QStringLiteral("Erva-Mate"));
        EXPECT_EQ(session.PlanoNum, 0);
        nec[0].clear();
        EXPECT_EQ(ProssegueFlorestais(session, host, kPinus, {}, nec)->texto, kMsgNaoCalculada);
    }
}

} // namespace
} // namespace lavra
