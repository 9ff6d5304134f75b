#include "app/session.h"
#include "app/slots.h"
#include "calc/crops.h"
#include "calc/forages.h"
#include "testsupport.h"

#include <gtest/gtest.h>

namespace lavra {
namespace {

using test::MachineLocale;
using namespace forrageiras;

constexpr int kCorte = 1;
constexpr int kFeno = 2;
constexpr int kPastejo = 3;

// One known analysis: organic matter 3 % (class 3), P class 2, K class 3, read from the shipped
// rows of FORRAGN, FORRAGPC<n> and FORRAGKC<n>.
class ForagesTest : public ::testing::Test {
protected:
    ForagesTest()
        : session(scratch.path())
    {
        analise(3, 1);
    }

    void analise(float mo, int cultivo)
    {
        session.Analise = test::analiseComClasses(3, 2, 3);
        session.Analise[17] = mo;
        session.Cultivo = static_cast<std::int16_t>(cultivo);
    }

    QStringList calcula(const DefinicoesForrageiras& d)
    {
        const CalculoCultura r = CalculaForrageiras(session.db, session, d);
        if (r.desfecho && r.desfecho->tipo != TipoDesfecho::Informacao)
            return { r.desfecho->texto };
        return { r.nec[0], r.nec[1], r.nec[2], r.nec[3] };
    }

    double celulaNomeada(const Consulta& c, const QString& coluna) const
    {
        return scratch.cell(c.tabela, coluna, c.chave);
    }

    MachineLocale ponto { test::pointLocale() };
    test::ScratchDatabase scratch;
    Session session;
};

TEST_F(ForagesTest, FiguresByRule)
{
    struct Caso {
        const char* nome;
        float mo;
        int cultivo;
        DefinicoesForrageiras d;
        QStringList nec; // N base, P base, K base, N cob
    };
    const QList<Caso> casos = {
        // Equation A at 3 %: 300 - 120 = 180; 3 t above 12: + 90, less 20 at the base. P 100 + 3 x 10,
        // K 80 + 3 x 20, both x 1.5 after a cut.
        { "elephant grass, cut", 3, 1, { CapimElefante, "15", 0, 0, kCorte }, { "20", "195", "210", "250" } },
        { "elephant grass, grazing", 3, 1, { CapimElefante, "15", 0, 0, kPastejo }, { "20", "130", "140", "250" } },
        { "elephant grass, second crop", 3, 2, { CapimElefante, "12", 0, 0, kPastejo }, { "20", "80", "60", "160" } },
        // The limit 6.4 % is inside the equations: A gives 44, B 150 - 115.2 - 32.768; 6.5 % gives
        // none to either, and the topdressing goes negative by the base.
        { "equation A at 6.4", 6.4f, 1, { GramineasAnuaisQuente, "8", 0, 0, kPastejo }, { "20", "100", "80", "24" } },
        { "equation A at 6.5", 6.5f, 1, { GramineasAnuaisQuente, "8", 0, 0, kPastejo }, { "20", "100", "80", "-20" } },
        { "equation B at 6.4", 6.4f, 1, { GramineasAnuaisFria, "6", 0, 0, kPastejo }, { "20", "100", "80", "-17.968" } },
        // B at 3 %: 150 - 54 - 7.2 = 88.8; 2 t above 8 at 30.
        { "equation B at 3", 3, 1, { GramineasPerenesFria, "10", 0, 0, kPastejo }, { "20", "120", "100", "128.8" } },
        // Mixtures: the reference by the combination, 6 for cool Anual X Perene, 9.5 for warm.
        { "cool mixture at 6, hay", 3, 1, { ConsorciacaoFria, "6", 2, 0, kFeno }, { "0", "150", "120", "0" } },
        { "warm mixture at 9.5", 3, 1, { ConsorciacaoQuente, "9.5", 2, 0, kPastejo }, { "0", "100", "80", "0" } },
        { "warm mixture at 11.5", 3, 1, { ConsorciacaoQuente, "11.5", 2, 0, kPastejo }, { "0", "120", "110", "0" } },
        { "warm Perene X Perene at 12", 3, 1, { ConsorciacaoQuente, "12", 3, 0, kPastejo }, { "0", "100", "80", "0" } },
        // Silage maize keys N on the previous crop, fallow as a mixture; no factor for its use.
        { "maize after a mixture", 3, 1, { MilhoSilagem, "20", 0, 3, 0 }, { "20", "175", "315", "90" } },
        { "maize after fallow", 3, 1, { MilhoSilagem, "20", 0, 4, 0 }, { "20", "175", "315", "90" } },
        { "maize after legumes", 3, 1, { MilhoSilagem, "15", 0, 2, 0 }, { "20", "150", "240", "30" } },
        { "sorghum", 3, 1, { SorgoSilagem, "15", 0, 1, 0 }, { "20", "150", "240", "40" } },
        // The legume introduction reads its N row; native pasture needs no yield and gets no N.
        { "legume introduction", 3, 1, { PastagensLeguminosas, "5", 0, 0, 0 }, { "20", "90", "70", "50" } },
        { "native pasture", 3, 1, { PastagensNativas, {}, 0, 0, 0 }, { "0", "90", "70", "0" } },
    };
    for (const Caso& c : casos) {
        SCOPED_TRACE(c.nome);
        analise(c.mo, c.cultivo);
        EXPECT_EQ(calcula(c.d), c.nec);
    }
}

TEST_F(ForagesTest, EveryCropBothCropOrdersReadsItsRows)
{
    for (int cultivo : { 1, 2 }) {
        analise(3, cultivo);
        for (int posicao = 0; posicao < culturasForrageiras().size(); ++posicao) {
            SCOPED_TRACE(QStringLiteral("%1 cultivo %2").arg(culturasForrageiras()[posicao]).arg(cultivo).toStdString());
            // A yield below every reference, so that the class figure stands alone.
            const DefinicoesForrageiras d { posicao, "1", 1, 1, kPastejo };
            const ChavesCultura chaves = chavesForrageiras(posicao, 1, cultivo);
            const QStringList nec = calcula(d);
            ASSERT_EQ(nec.size(), 4) << nec.join(' ').toStdString();
            EXPECT_EQ(nec[1].toDouble(), celulaNomeada(chaves.p, "Classe2"));
            EXPECT_EQ(nec[2].toDouble(), celulaNomeada(chaves.k, "Classe3"));
            const RegraNForragem regra = regraNitrogenioForragem(posicao);
            if (regra == RegraNForragem::Nenhuma) {
                EXPECT_EQ(nec[0] + nec[3], "00");
                continue;
            }
            const double base = celulaNomeada(chaves.n, "NBase");
            const double total = regra == RegraNForragem::Tabela ? celulaNomeada(chaves.n, "NMO3")
                                                                 : nitrogenioEquacao(regra, 3);
            EXPECT_EQ(nec[0].toDouble(), base);
            EXPECT_NEAR(nec[3].toDouble(), total - base, 1e-9);
        }
        EXPECT_EQ(session.CultivoTxt, QString::number(cultivo));
    }
}

TEST_F(ForagesTest, ChecksInOrderAndTheNoteOnNitrogen)
{
    struct Caso {
        DefinicoesForrageiras d;
        QString recusa;
    };
    const QList<Caso> casos = {
        { { -1, "5", 1, 1, 1 }, kMsgSelecioneCultura },
        { { ConsorciacaoFria, "", 0, 0, 0 }, kMsgInformeExpectativa },
        { { ConsorciacaoFria, "5", 0, 0, 0 }, kMsgSelecioneCombinacao },
        { { ConsorciacaoFria, "5", 1, 0, 0 }, kMsgSelecioneUsoAnterior },
        { { MilhoSilagem, "5", 0, 0, 0 }, kMsgSelecioneCultivoAnterior },
        { { Alfafa, "5", 0, 0, 0 }, {} }, // alfalfa asks no use of the area
        { { CapimElefante, "5", 0, 0, 0 }, kMsgSelecioneUsoAnterior },
        { { PastagensNativas, "", 0, 0, 0 }, {} },
    };
    for (const Caso& c : casos) {
        const CalculoCultura r = CalculaForrageiras(session.db, session, c.d);
        const bool recusado = r.desfecho && r.desfecho->tipo == TipoDesfecho::Aviso;
        EXPECT_EQ(recusado ? r.desfecho->texto : QString(), c.recusa) << c.d.posicao;
        EXPECT_EQ(r.substituiResultado, !recusado);
    }

    session.ObsAjuste = QStringLiteral("ajustada");
    const CalculoCultura alfafa = CalculaForrageiras(session.db, session, { Alfafa, "5", 0, 0, 0 });
    ASSERT_TRUE(alfafa.desfecho);
    EXPECT_EQ(alfafa.desfecho->tipo, TipoDesfecho::Informacao);
    EXPECT_EQ(alfafa.desfecho->texto,
        QStringLiteral("Não será aplicado N, porque para Alfafa recomenda-se fazer a inoculação das sementes com "
                       "rizóbio específico. Pode ser aplicado de 20 a 40 kg/ha de N após cada corte se for "
                       "constatada ineficiência da inoculação."));
    EXPECT_TRUE(session.ObsAjuste.isEmpty());
    // The grass introduction takes the legume note, the mixtures theirs, the grasses none.
    EXPECT_TRUE(avisoForragem(PastagensGramineas).endsWith(QStringLiteral("N após cada duas utilizações da pastagem.")));
    EXPECT_FALSE(avisoForragem(PastagensGramineas).contains(QStringLiteral("perfilhamento")));
    EXPECT_TRUE(avisoForragem(PastagensGramELeg).contains(QStringLiteral(" no perfilhamento da gramínea e 20 kg/ha")));
    EXPECT_TRUE(avisoForragem(PastagensLeguminosas).isEmpty());
}

TEST_F(ForagesTest, WayOnCarriesTheTypedYieldButNotForNativePasture)
{
    MachineLocale virgula(test::commaLocale());
    test::FakeHost janelas;
    const TextosNec nec = { "20", "90", "70", "50" };
    session.Dados[slot::kExpectativa] = 0;
    EXPECT_FALSE(ProssegueForrageiras(session, janelas, { PastagensNativas, {}, 0, 0, 0 }, nec));
    EXPECT_EQ(session.Dados[slot::kCultura].toString(), QStringLiteral("Pastagens naturais nativas ou naturalizadas"));
    EXPECT_EQ(session.Dados[slot::kExpectativa].toInt(), 0);
    EXPECT_FALSE(ProssegueForrageiras(session, janelas, { CapimElefante, "14,5", 0, 0, kCorte }, nec));
    EXPECT_EQ(session.Dados[slot::kExpectativa].toFloat(), 14.5f);
    // The other decimal symbol is no number here, and nothing is written.
    session.Dados[slot::kCultura] = QString();
    EXPECT_EQ(ProssegueForrageiras(session, janelas, { CapimElefante, "14.5", 0, 0, kCorte }, nec)->texto,
        kMsgExpectativaInvalida);
    EXPECT_TRUE(session.Dados[slot::kCultura].toString().isEmpty());
}

} // namespace
} // namespace lavra
