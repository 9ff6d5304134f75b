#include "app/session.h"
#include "app/slots.h"
#include "calc/crops.h"
#include "calc/medicinal.h"
#include "calc/ornamentals.h"
#include "store/storeerror.h"
#include "testsupport.h"

#include <gtest/gtest.h>

namespace lavra {
namespace {

using test::MachineLocale;
using namespace ornamentais;

// The two groups chosen by the crop alone: ornamentals by the program's doses, medicinal plants
// by the shipped rows of CONDMEDN, CONDMEDP and CONDMEDK.
class PlainCropsTest : public ::testing::Test {
protected:
    PlainCropsTest()
        : session(scratch.path())
    {
        classes(3, 2, 3);
    }

    void classes(float mo, float p, float k) { session.Analise = test::analiseComClasses(mo, p, k); }

    static QStringList lista(const CalculoCultura& r)
    {
        if (r.desfecho)
            return { r.desfecho->texto };
        return { r.nec[0], r.nec[1], r.nec[2], r.nec[3] };
    }

    MachineLocale ponto { test::pointLocale() };
    test::ScratchDatabase scratch;
    Session session;
};

TEST_F(PlainCropsTest, OrnamentalDosesByClassNumber)
{
    struct Caso {
        int posicao;
        float mo, p, k;
        QStringList nec;
    };
    const QList<Caso> casos = {
        // Organic matter: class 2 the first row, 3 and 4 the second; the third is never reached.
        { Crisantemo, 2, 1, 1, { "100", "80", "140", "Consultar MAC" } },
        { Crisantemo, 3, 2, 2, { "75", "60", "120", "Consultar MAC" } },
        { Crisantemo, 4, 3, 3, { "75", "40", "100", "Consultar MAC" } },
        { Roseira, 2, 1, 1, { "120", "480", "400", "Consultar MAC" } },
        { Roseira, 4, 4, 4, { "80", "200", "80", "Consultar MAC" } },
        { Roseira, 4, 5, 5, { "80", "200", "80", "Consultar MAC" } },
        // No class, no dose.
        { Roseira, 3, 0, 6, { "80", "", "", "Consultar MAC" } },
    };
    for (const Caso& c : casos) {
        classes(c.mo, c.p, c.k);
        EXPECT_EQ(lista(CalculaOrnamentais(session, c.posicao)), c.nec) << c.posicao << " " << c.mo;
    }
    EXPECT_EQ(nitrogenioOrnamentais(Roseira, 5.5), 60);
    EXPECT_EQ(lista(CalculaOrnamentais(session, -1)), QStringList { kMsgSelecioneCultura });
}

TEST_F(PlainCropsTest, OrnamentalsGoOnOnlyWithATypedTopdressing)
{
    test::FakeHost janelas;
    session.ObsAjuste = QStringLiteral("ajustada");
    const CalculoCultura r = CalculaOrnamentais(session, Roseira);
    EXPECT_TRUE(session.ObsAjuste.isEmpty());
    EXPECT_EQ(session.RefazPlano, 1);

    // Ajustar carries the text to frmAjusta as it stands.
    CopiaParaNec(session, r.nec);
    EXPECT_EQ(session.Nec[3], QVariant(kConsultarMAC));
    EXPECT_EQ(session.Nec[0], QVariant(80.0f));

    session.Dados[slot::kCultura] = QString();
    const Parada recusa = ProssegueOrnamentais(session, janelas, Roseira, r.nec);
    ASSERT_TRUE(recusa);
    EXPECT_EQ(recusa->texto, kMsgCoberturaOrnamentais);
    EXPECT_EQ(recusa->campo, QStringLiteral("cmdAjusta"));
    EXPECT_TRUE(session.Dados[slot::kCultura].toString().isEmpty());

    session.Dados[slot::kExpectativa] = 0;
    EXPECT_FALSE(ProssegueOrnamentais(session, janelas, Roseira, { "80", "320", "300", "40" }));
    EXPECT_EQ(session.Dados[slot::kCultura].toString(), QStringLiteral("Roseira de corte"));
    EXPECT_EQ(session.Dados[slot::kExpectativa].toInt(), 0);
    EXPECT_EQ(session.Nec[3].toFloat(), 40.0f);
}

TEST_F(PlainCropsTest, MedicinalEveryCropEveryClassFolded)
{
    const QStringList colunas = { {}, "ClasseMB_B", "ClasseM", "ClasseA_MA" };
    const QStringList colunasMO = { {}, {}, "NMO2", "NMO3", "NMO4" };
    const auto celula = [this](const QString& tabela, const QString& coluna, const QString& chave) {
        return scratch.cell(tabela, coluna, chave);
    };
    for (int posicao = 0; posicao < culturasCondimentares().size(); ++posicao) {
        const QString cultura = culturasCondimentares()[posicao];
        for (int c = 1; c <= 5; ++c) {
            const int mo = 2 + c % 3;
            classes(static_cast<float>(mo), static_cast<float>(c), static_cast<float>(6 - c));
            SCOPED_TRACE(QStringLiteral("%1 classe %2").arg(cultura).arg(c).toStdString());
            const QStringList nec = lista(CalculaCondimentares(session.db, session, posicao));
            ASSERT_EQ(nec.size(), 4);
            EXPECT_EQ(nec[1].toDouble(), celula("CONDMEDP", colunas[classeDobrada(c)], cultura));
            EXPECT_EQ(nec[2].toDouble(), celula("CONDMEDK", colunas[classeDobrada(6 - c)], cultura));
            const double total = celula("CONDMEDN", colunasMO[mo], cultura);
            EXPECT_NEAR(nec[0].toDouble(), celula("CONDMEDN", "FracaoBase", cultura) * total, 1e-4);
            EXPECT_NEAR(nec[0].toDouble() + nec[3].toDouble(), total, 1e-9);
        }
    }
    // Alfavaca, MO 3: 0.33 of 60 at the base; class 1 of P column 1, class 5 of K column 3.
    classes(3, 1, 5);
    EXPECT_EQ(lista(CalculaCondimentares(session.db, session, 0)), QStringList({ "19.8", "120", "40", "40.2" }));
    // A class the analysis lacks leaves its box empty rather than showing the crop's name.
    classes(3, 0, 3);
    EXPECT_EQ(lista(CalculaCondimentares(session.db, session, 0)), QStringList({ "19.8", "", "80", "40.2" }));
    EXPECT_EQ(lista(CalculaCondimentares(session.db, session, -1)), QStringList { kMsgSelecioneCultura });
}

TEST_F(PlainCropsTest, MedicinalTablesFollowTheDigitAnEarlierCalculationLeft)
{
    classes(3, 3, 3);
    // A fresh run reads the plain names; a digit left by groups 1 to 3 reads that crop's tables.
    for (const QString& sufixo : { QString(), QStringLiteral("1"), QStringLiteral("2") }) {
        session.CultivoTxt = sufixo;
        EXPECT_EQ(lista(CalculaCondimentares(session.db, session, 3)), QStringList({ "29.7", "80", "100", "60.3" }))
            << sufixo.toStdString();
    }
    EXPECT_EQ(session.CultivoTxt, QStringLiteral("2"));
    // A suffix without its table is a database failure for the window to tell.
    session.CultivoTxt = QStringLiteral("9");
    EXPECT_THROW(CalculaCondimentares(session.db, session, 3), StoreError);

    test::FakeHost janelas;
    session.Dados[slot::kExpectativa] = 0;
    EXPECT_FALSE(ProssegueCondimentares(session, janelas, 3, { "29.7", "80", "100", "60.3" }));
    EXPECT_EQ(session.Dados[slot::kCultura].toString(), QStringLiteral("Capim-limão"));
    EXPECT_EQ(session.Dados[slot::kExpectativa].toInt(), 0);
}

} // namespace
} // namespace lavra
