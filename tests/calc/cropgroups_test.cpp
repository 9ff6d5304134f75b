#include "calc/cropgroups.h"
#include "calc/cropstep.h"
#include "store/schema.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace lavra {
namespace {

struct CasoGrupo {
    int numero;
    const char* nome;
    const char* janela;
    const char* janelaAjuste;
    bool pedeCultivo;
    qsizetype culturas;
};

class CropGroupTest : public ::testing::TestWithParam<CasoGrupo> { };

TEST_P(CropGroupTest, NumberNameWindowsAndCrops)
{
    const CasoGrupo& c = GetParam();
    const GrupoCultura* g = grupoCultura(c.numero);
    ASSERT_TRUE(g);
    EXPECT_EQ(grupoCultura(QString::fromUtf8(c.nome)), g);
    EXPECT_EQ(nomesGrupos().value(c.numero - 1), QString::fromUtf8(c.nome));
    EXPECT_EQ(g->janela, QString::fromUtf8(c.janela));
    EXPECT_EQ(janelaAjustada(g->nome), QString::fromUtf8(c.janelaAjuste));
    EXPECT_EQ(g->pedeCultivo, c.pedeCultivo);
    EXPECT_EQ(culturasDoGrupo(c.numero).size(), c.culturas);
    // Every table the group reads is one the database has, for either crop order.
    for (const QString& ordem : { QStringLiteral("1"), QStringLiteral("2") }) {
        for (const QString& tabela : { g->tabelaN, g->prefixoP.isEmpty() ? QString() : g->tabelaP(ordem),
                 g->prefixoK.isEmpty() ? QString() : g->tabelaK(ordem) }) {
            if (tabela.isEmpty())
                continue;
            const bool visao = std::any_of(schema::views().begin(), schema::views().end(),
                [&tabela](const ViewDef& v) { return v.name == tabela; });
            EXPECT_TRUE(schema::findTable(tabela) || visao) << tabela.toStdString();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Grupos, CropGroupTest,
    ::testing::Values(CasoGrupo { 1, "Produtoras de grãos", "frmGraos", "frmGraos", true, 23 },
        CasoGrupo { 2, "Hortaliças", "frmHort", "frmHort", true, 26 },
        CasoGrupo { 3, "Forrageiras", "frmForrage", "frmForrage", true, 18 },
        CasoGrupo { 4, "Essências Florestais", "frmFlorest", "", false, 6 },
        CasoGrupo { 5, "Plantas Ornamentais", "frmOrnam", "frmOrnam", false, 2 },
        CasoGrupo { 6, "Medicinais/Aromáticas/Condimentares", "frmCondMedic", "", false, 22 },
        CasoGrupo { 7, "Outras Culturas (Cana-de-acúcar)", "frmCana", "", false, 2 }));

TEST(CropGroupTest, WindowsOfTheGroupsAndPlansAndNoneForOtherNames)
{
    EXPECT_FALSE(grupoCultura(0));
    EXPECT_FALSE(grupoCultura(8));
    EXPECT_FALSE(grupoCultura(QStringLiteral("Produtoras de graos")));
    EXPECT_TRUE(culturasDoGrupo(8).isEmpty());
    EXPECT_TRUE(janelaAjustada(QString()).isEmpty());
    EXPECT_EQ(janelaDoPlano(QStringLiteral("Fórmulas")), QStringLiteral("frmNPK"));
    EXPECT_EQ(janelaDoPlano(QStringLiteral("Formulação")), QStringLiteral("frmFormulação"));
    EXPECT_TRUE(janelaDoPlano(QString()).isEmpty());
}

} // namespace
} // namespace lavra
