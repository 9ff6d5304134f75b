#include "app/analise.h"
#include "app/session.h"
#include "charts/bands.h"
#include "charts/choice.h"
#include "charts/shares.h"
#include "report/kinds.h"
#include "store/storeerror.h"
#include "testsupport.h"

#include <gtest/gtest.h>

namespace lavra {
namespace {

using test::commaLocale;
using test::MachineLocale;
using test::pointLocale;

constexpr std::size_t kPH = 0, kCa = 1, kCTC = 5, kP = 7, kK = 8;

// A row with the values and classes of the bars; the rest empty.
QVector<QVariant> analise(std::initializer_list<std::pair<int, QVariant>> celulas)
{
    QVector<QVariant> a(analise::kColunas);
    for (const auto& [coluna, valor] : celulas)
        a[coluna] = valor;
    return a;
}

class ChartsTest : public ::testing::Test {
protected:
    test::ScratchDatabase scratch;
    Session session { scratch.path() };
    TabelaGraf graf = TabelaGraf::le(session.db);

    void insere(const QString& codigo, const QString& fazenda, const QString& gleba, const QString& data, double ph)
    {
        scratch.exec(QStringLiteral("INSERT INTO Analises (Código, Cliente, Local_, Fazenda, Gleba, Data_, pH, ClassePH) "
                                    "VALUES ('%1', 'Ana', 'Erechim', '%2', '%3', '%4', %5, 2)")
                         .arg(codigo, fazenda, gleba, data)
                         .arg(ph));
    }
};

// The band arithmetic on the shipped rows of Graf, as the data notes work them out.
TEST_F(ChartsTest, positionsOnTheBandScale)
{
    const auto pos = [&](std::initializer_list<std::pair<int, QVariant>> c) { return PosicoesDaAnalise(graf, analise(c)); };

    // pH 5.2 in class 2 (5.0 to 5.4) stands in the middle of band B; a value at the lower end
    // of its class stands at the class' base, one at the upper end of a closed class 1240 above.
    EXPECT_NEAR(*pos({ { analise::kPH, 5.2f }, { analise::kClassePH, 2 } })[kPH], 1929.6, 1e-3);
    EXPECT_NEAR(*pos({ { analise::kPH, 5.0f }, { analise::kClassePH, 2 } })[kPH], 1309.6, 1e-3);
    EXPECT_NEAR(*pos({ { analise::kPH, 5.4f }, { analise::kClassePH, 2 } })[kPH], 1309.6 + 1240, 1e-2);

    // The open top class adds the value to its upper limit: pH class 4 runs from 6 to 7.
    EXPECT_NEAR(*pos({ { analise::kPH, 7 }, { analise::kClassePH, 4 } })[kPH], 3882.4 + 1240.0 / 8, 1e-3);
    EXPECT_NEAR(*pos({ { analise::kPH, 14 }, { analise::kClassePH, 4 } })[kPH], 3882.4 + 8 * 1240.0 / 15, 1e-3);
    EXPECT_NEAR(*pos({ { analise::kCa, 12 }, { analise::kClasseCa, 4 } })[kCa], 4502.4, 1e-3);

    // K takes the class of CTC into its key: the same 45 mg/dm3 stands lower on a soil of higher CTC.
    const auto k = [&](int classeCtc, int classeK) {
        return pos({ { analise::kK, 45 }, { analise::kClasseK, classeK }, { analise::kClasseCTC, classeCtc } })[kK];
    };
    EXPECT_NEAR(*k(3, 3), 2906, 1e-3);
    EXPECT_NE(*k(2, 3), *k(3, 3));
    // K is worked out as a 32-bit float.
    EXPECT_EQ(*k(3, 3), static_cast<double>(static_cast<float>(*k(3, 3))));

    // An indicator without a class has no row: the Fertigraph leaves its bar empty, and puts K at 0.
    const Fertigrafico f = MontaFertigrafico(graf, analise({ { analise::kCodigo, QStringLiteral("Sede/a/15/08/2026") } }));
    const auto& barras = f.grafico.series.first().valores;
    ASSERT_EQ(barras.size(), 9);
    EXPECT_FALSE(barras[kPH].has_value());
    EXPECT_FALSE(barras[kCTC].has_value());
    EXPECT_FALSE(barras[kP].has_value());
    EXPECT_EQ(barras[kK], 0.0);
    EXPECT_EQ(f.grafico.titulo, QStringLiteral("SEDE/A/15/08/2026"));
}

TEST_F(ChartsTest, fertigraphGridUnderBothDecimalSymbols)
{
    const QVector<QVariant> a = analise({ { analise::kPH, 5.25f }, { analise::kArgila, 42.0f }, { analise::kK, 120 } });
    {
        MachineLocale local(commaLocale());
        const Fertigrafico f = MontaFertigrafico(graf, a);
        ASSERT_EQ(f.tabela.size(), 11);
        EXPECT_EQ(f.tabela[0], (QStringList { QStringLiteral("Indicador"), QStringLiteral("Valor") }));
        EXPECT_EQ(f.tabela[1], (QStringList { QStringLiteral("pH"), QStringLiteral("5,3") }));
        EXPECT_EQ(f.tabela[8], (QStringList { QStringLiteral("Argila (%)"), QStringLiteral("42,0") }));
        EXPECT_EQ(f.tabela[10][1], QStringLiteral("120,0"));
        EXPECT_EQ(f.tabela[2][1], QString());
    }
    MachineLocale local(pointLocale());
    EXPECT_EQ(MontaFertigrafico(graf, a).tabela[1][1], QStringLiteral("5.3"));
}

TEST_F(ChartsTest, evolutionOfOneField)
{
    insere(QStringLiteral("Sede/1/10/03/2025"), QStringLiteral("Sede"), QStringLiteral("1"), QStringLiteral("2025-03-10"), 5.2);
    // Alone in its field: told, and nothing loaded.
    session.NAnalisesEvol = 7;
    EXPECT_EQ(CarregaEvolucao(session, QStringLiteral("Sede/1/10/03/2025")),
        Desfecho::informacao(QStringLiteral("Não é possível exibir gráfico de evolução da fertilidade para uma única área!")));
    EXPECT_EQ(session.NAnalisesEvol, 7);

    // The same field name on another farm is another field; a later analysis comes after by date,
    // even when it was typed first.
    insere(QStringLiteral("Outra/1/01/01/2024"), QStringLiteral("Outra"), QStringLiteral("1"), QStringLiteral("2024-01-01"), 6);
    insere(QStringLiteral("Sede/1/02/02/2024"), QStringLiteral("Sede"), QStringLiteral("1"), QStringLiteral("2024-02-02"), 5.6);
    insere(QStringLiteral("Sede/1/02/02/2024b"), QStringLiteral("Sede"), QStringLiteral("1"), QStringLiteral("2024-02-02"), 5.0);
    EXPECT_FALSE(CarregaEvolucao(session, QStringLiteral("Sede/1/10/03/2025")));
    ASSERT_EQ(session.NAnalisesEvol, 3);
    const GraficoBarras g = MontaEvolucao(graf, session.EvolAnalises);
    EXPECT_EQ(g.categorias, (QStringList { QStringLiteral("02/02/2024"), QStringLiteral("02/02/2024"), QStringLiteral("10/03/2025") }));
    EXPECT_EQ(g.titulo, QStringLiteral("SEDE/1") + QString(16, QLatin1Char(' ')));
    ASSERT_EQ(g.series.size(), 9);
    EXPECT_EQ(g.series[kPH].nome, QStringLiteral("pH"));
    EXPECT_EQ(g.series[kK].cor, (Cor { 0, 128, 0 }));
    // Two of the same day in the order the database gives them.
    EXPECT_NEAR(*g.series[kPH].valores[0], 1309.6 + 0.6 * 1240 / 0.4, 1e-2);
    EXPECT_NEAR(*g.series[kPH].valores[1], 1309.6, 1e-2);
    // Ca has no class in these rows: its cells stay empty.
    EXPECT_FALSE(g.series[kCa].valores[2].has_value());

    // The comparison is a LIKE: a "%" in the farm's name reaches every farm.
    insere(QStringLiteral("%/1/05/05/2025"), QStringLiteral("%"), QStringLiteral("1"), QStringLiteral("2025-05-05"), 5.5);
    EXPECT_FALSE(CarregaEvolucao(session, QStringLiteral("%/1/05/05/2025")));
    EXPECT_EQ(session.NAnalisesEvol, 5);

    EXPECT_THROW(CarregaEvolucao(session, QStringLiteral("Nenhuma/0/01/01/2000")), StoreError);
}

TEST(ChartShares, occupationOfTheCec)
{
    const QVector<QVariant> a = analise({ { analise::kCodigo, QStringLiteral("Sede/1/10/03/2025") }, { analise::kCa, 3.0f },
        { analise::kMg, 1.0f }, { analise::kAl, 0.5f }, { analise::kHAl, 3.5f }, { analise::kK, 39.0f }, { analise::kCTC, 8.1f } });
    {
        MachineLocale local(commaLocale());
        const Pizza p = OcupacaoCTC(a);
        ASSERT_TRUE(p.grafico);
        QStringList rotulos;
        for (const Fatia& f : p.grafico->fatias)
            rotulos << f.rotulo;
        EXPECT_EQ(rotulos, (QStringList { QStringLiteral("Cálcio 37,0 %"), QStringLiteral("Magnésio 12,3 %"),
                               QStringLiteral("Potássio 1,2 %"), QStringLiteral("Hidrogênio 37,0 %"), QStringLiteral("Alumínio 6,2 %") }));
        EXPECT_EQ(p.grafico->titulo, QStringLiteral("SEDE/1/10/03/2025"));
        EXPECT_EQ(p.grafico->fatias[4].cor, (Cor { 255, 0, 0 }));
    }
    {
        MachineLocale local(pointLocale());
        QVector<QVariant> semAl = a;
        semAl[analise::kAl] = 0.0f;
        EXPECT_EQ(OcupacaoCTC(semAl).grafico->fatias[4].rotulo, QStringLiteral("Alumínio 0.0 %"));
    }
    QVector<QVariant> semCtc = a;
    semCtc[analise::kCTC] = 0;
    const Pizza recusada = OcupacaoCTC(semCtc);
    EXPECT_FALSE(recusada.grafico);
    ASSERT_TRUE(recusada.recusa);
    EXPECT_EQ(recusada.recusa->tipo, TipoDesfecho::Critico);
}

TEST(ChartShares, costShareAndItsRounding)
{
    MachineLocale local(commaLocale());
    // Halves go to the even whole number, one by one, so the sum need not be 100.
    EXPECT_EQ(CalcPerc(12.5, 100), QStringLiteral("12%"));
    EXPECT_EQ(CalcPerc(13.5, 100), QStringLiteral("14%"));
    EXPECT_EQ(CalcPerc(0.0, 100), QStringLiteral("0%"));
    EXPECT_EQ(CalcPerc(std::nullopt, 100), QString());

    QVector<QVariant> dados(Session::kSlots, QVariant(0));
    dados[11] = 1250.0;
    dados[17] = QStringLiteral("2750,0");
    dados[23] = QVariant();
    dados[40] = QStringLiteral("4000,00");
    const Pizza formulas = ParticipacaoCusto(dados, QStringLiteral("formulas"), QStringLiteral("Milho-Primeiro-15/10/2026"));
    ASSERT_TRUE(formulas.grafico);
    ASSERT_EQ(formulas.grafico->fatias.size(), 3);
    EXPECT_EQ(formulas.grafico->fatias[0].rotulo, QStringLiteral("Calcário 31%"));
    EXPECT_EQ(formulas.grafico->fatias[1].rotulo, QStringLiteral("Fórmula  69%"));
    EXPECT_EQ(formulas.grafico->fatias[2].rotulo, QStringLiteral("Cobertura "));
    EXPECT_TRUE(formulas.grafico->nota.isEmpty());

    // Forest slots hold a grid row: the cost is behind the last "#", read with the machine's symbol.
    EXPECT_EQ(CustoDoSlot(QStringLiteral("Ureia#3547,5#133#471,8175#1330#4718,175"), true), 4718.175);
    EXPECT_EQ(CustoDoSlot(QStringLiteral("---#---#---#---#---#---"), true), 0.0);
    EXPECT_EQ(CustoDoSlot(QStringLiteral("-"), true), 0.0);
    EXPECT_EQ(CustoDoSlot(QStringLiteral("312,5"), true), 312.5);
    EXPECT_EQ(CustoDoSlot(QVariant(), true), std::nullopt);

    dados[13] = QStringLiteral("4-30-10#3547,5#188#666,93#1880#6669,3");
    dados[19] = QStringLiteral("Ureia#3547,5#22#79#220#790");
    dados[27] = 10759.3;
    const Pizza floresta = ParticipacaoCusto(dados, QStringLiteral("floresta"), QStringLiteral("Eucalipto-0-02/03/2027"));
    ASSERT_EQ(floresta.grafico->fatias.size(), 13);
    EXPECT_EQ(floresta.grafico->fatias[1].rotulo, QStringLiteral("Fórmula (P) 62%"));
    EXPECT_EQ(floresta.grafico->fatias[6].rotulo, QStringLiteral("FonteN (C) 7%"));
    EXPECT_EQ(floresta.grafico->fatias[12].rotulo, QStringLiteral("FonteK (R) 0%"));
    EXPECT_EQ(floresta.grafico->nota, QStringLiteral("Legenda: P=Plantio, C=Cobertura, R=reposição"));

    dados[58] = 0;
    const Pizza semTotal = ParticipacaoCusto(dados, QStringLiteral("formulacao"), QString());
    EXPECT_FALSE(semTotal.grafico);
    EXPECT_EQ(semTotal.recusa->tipo, TipoDesfecho::Critico);
}

// A chart chosen in a selection window leaves a calculation in progress as it was.
TEST_F(ChartsTest, chosenRecommendationLeavesTheSessionAlone)
{
    scratch.exec(QStringLiteral("INSERT INTO Analises (Código, Cliente) VALUES ('Sede/1/10/03/2025', 'Ana')"));
    scratch.exec(QStringLiteral("INSERT INTO RecoForm (CodAnalise, CodCultivo, Cultura, CalcCustoTotal, CustoTotal) "
                                "VALUES ('Sede/1/10/03/2025', 'Milho-Primeiro-15/10/2026', 'Milho', 500, 1000)"));
    session.Analise = analise({ { analise::kCodigo, QStringLiteral("Em curso") } });
    session.Dados[1] = QStringLiteral("Soja");
    session.PlanoTexto = QStringLiteral("formulacao");

    EscolheRecomendacaoDoGrafico(session, report::TipoLaudo::Formulas, QStringLiteral("Sede/1/10/03/2025"),
        QStringLiteral("Milho-Primeiro-15/10/2026"));
    EXPECT_EQ(session.GrafAvulso, 1);
    const Pizza p = ParticipacaoDoGrafico(session);
    ASSERT_TRUE(p.grafico);
    EXPECT_EQ(p.grafico->titulo, QStringLiteral("Milho-Primeiro-15/10/2026"));
    EXPECT_EQ(p.grafico->fatias[0].rotulo, QStringLiteral("Calcário 50%"));
    EXPECT_EQ(session.Analise[analise::kCodigo], QStringLiteral("Em curso"));
    EXPECT_EQ(session.Dados[1], QStringLiteral("Soja"));
    EXPECT_EQ(session.PlanoTexto, QStringLiteral("formulacao"));

    EXPECT_THROW(EscolheAnaliseDoGrafico(session, QStringLiteral("Sumiu/1/01/01/2020")), StoreError);
    session.GrafAvulso = 0;
    EXPECT_EQ(AnaliseDoGrafico(session)[analise::kCodigo], QStringLiteral("Em curso"));
}

// The way back to the Fertigraph: only from a chart opened there, and never while everything closes.
TEST(ChartWays, backToTheFertigraph)
{
    Session session;
    test::FakeHost host;
    host.open = { QStringLiteral("frmLavra"), QStringLiteral("frmChart"), QStringLiteral("frmOcupaCTC") };
    FechaGraficoDoFertigrafico(session, host);
    EXPECT_TRUE(host.shown.isEmpty());
    session.CTCDoFertigrafico = true;
    FechaGraficoDoFertigrafico(session, host);
    EXPECT_EQ(host.closed, QStringList { QStringLiteral("frmChart") });
    EXPECT_EQ(host.shown, QStringList { QStringLiteral("frmChart") });
    EXPECT_FALSE(session.CTCDoFertigrafico);

    session.CTCDoFertigrafico = true;
    FechaJanelas(session, host, false);
    EXPECT_FALSE(session.CTCDoFertigrafico);
}

} // namespace
} // namespace lavra
