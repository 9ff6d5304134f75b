#include "app/session.h"
#include "plan/formulas.h"
#include "store/store.h"
#include "testsupport.h"

#include <gtest/gtest.h>

using namespace lavra;

namespace {

// A row of NPK by ordinal, as the store gives it: grades, P/K and prices as 32-bit floats.
QVariantList npk(const QString& formula, float n, float p, float k, float preco, const QString& eficN = "---")
{
    return { formula, QStringLiteral("Teste"), n, p, k, k == 0 ? 0.0f : p / k, 0.0f, preco,
        QStringLiteral("---"), eficN, QStringLiteral("---"), QStringLiteral("---") };
}

TabelaNPK tabela(const QVector<QVariantList>& linhas)
{
    return { { "Fórmula", "Especificação", "N", "P", "K", "P/K", "US$/t", "R$/t", "MS", "EFICN", "EFICP",
                 "EFICK" },
        linhas };
}

LinhaFlx linhaDe(const QVariantList& valores)
{
    return Insere_Indicados(tabela({ valores }), {}, false).linhas.value(0);
}

// A session as the formula step finds it, with the plan to be redone.
void preparaSessao(Session& s, float area, std::int16_t grupo)
{
    s.Analise = QVector<QVariant>(36);
    s.Analise[6] = area;
    s.Grupo = grupo;
    s.RefazPlano = 1;
}

QStringList formulas(const GradeFormulas& grade)
{
    QStringList nomes;
    for (const LinhaFlx& linha : grade.linhas)
        nomes << linha[flx::kFormula];
    return nomes;
}

} // namespace

TEST(FormulasTest, ShippedTableComesInPKOrderUnderItsOwnHeadings)
{
    test::MachineLocale comma(test::commaLocale());
    test::ScratchDatabase scratch;
    Store db(scratch.path());
    const TabelaNPK lida = LeTabelaNPK(db);
    EXPECT_FALSE(db.cn.isOpen());
    const int linhas = scratch.scalar(QStringLiteral("SELECT COUNT(*) FROM NPK")).toInt();
    ASSERT_EQ(lida.linhas.size(), linhas);
    for (int i = 1; i < lida.linhas.size(); ++i)
        EXPECT_LE(lida.linhas[i - 1][5].toFloat(), lida.linhas[i][5].toFloat());

    const GradeFormulas todas = Insere_Indicados(lida, { 20, 60, 60 }, false);
    ASSERT_EQ(todas.linhas.size(), linhas);
    EXPECT_EQ(todas.cabecalho[flx::kFormula], QStringLiteral("Fórmula"));
    EXPECT_EQ(todas.cabecalho[flx::kEspecificacao], QStringLiteral("Especificação"));
    EXPECT_EQ(todas.cabecalho[flx::kPK], QStringLiteral("P/K"));
    EXPECT_EQ(todas.cabecalho[flx::kPreco], QStringLiteral("R$/t"));
    EXPECT_TRUE(todas.cabecalho[flx::kN].isEmpty() && todas.cabecalho[flx::kEficN].isEmpty());
    // The ratio shows two decimals under the machine's symbol.
    EXPECT_EQ(todas.linhas.last()[flx::kPK], QStringLiteral("3,00"));
}

TEST(FormulasTest, IndicatedListKeepsTheToleranceAtExactlyTenKilograms)
{
    // Need 10-40-40: every dose below is 200 kg/ha, by equal differences of P and K.
    const TabelaNPK npkTeste = tabela({
        npk("45-0-0", 45, 0, 0, 3000), // neither P nor K: never indicated
        npk("0-20-20", 0, 20, 20, 3000), // N -10
        npk("10-21-19", 10, 21, 19, 3000), // N +10
        npk("10.005-21-19", 10.005f, 21, 19, 3000), // N +10.01
        npk("5-25-15", 5, 25, 15, 3000), // P +10 and K -10
        npk("5-26-14", 5, 26, 14, 3000), // P +12
    });
    const GradeFormulas indicadas = Insere_Indicados(npkTeste, { 10, 40, 40 }, true);
    EXPECT_EQ(formulas(indicadas), (QStringList { "0-20-20", "10-21-19", "5-25-15" }));
    EXPECT_EQ(Insere_Indicados(npkTeste, { 10, 40, 40 }, false).linhas.size(), 6);

    // Without K the ratio is unknown, yet the list still works on P + K.
    EXPECT_EQ(formulas(Insere_Indicados(tabela({ npk("0-30-0", 0, 30, 0, 2000) }), { 0, 60, 0 }, true)),
        QStringList { "0-30-0" });
}

TEST(FormulasTest, NeedCaptionPrintsSinglesAndTheRatioWithTwoDecimalsOrAQuestionMark)
{
    test::MachineLocale comma(test::commaLocale());
    EXPECT_EQ(TextoNecessidade({ 40.5f, 60, 90 }),
        QStringLiteral(
            "Necessidade NPK na Base é de: 40,5 _ 60 _ 90. A Relação P/K da Necessidade é de: 0,67"));
    EXPECT_TRUE(TextoNecessidade({ 0, 60, 0 }).endsWith(QStringLiteral("é de: ?")));
}

TEST(FormulasTest, ThreeModesGiveDoseSupplyAndCost)
{
    test::MachineLocale comma(test::commaLocale());
    struct Case {
        ModoCalculo modo;
        QString dose, custo;
        std::array<QString, 3> forn;
    };
    const Case cases[] = {
        { ModoCalculo::IntegralizarP, "200", "600,00", { "20", "40", "40" } },
        { ModoCalculo::IntegralizarK, "300", "900,00", { "30", "60", "60" } },
        { ModoCalculo::DiferencasIguais, "250", "750,00", { "25", "50", "50" } },
    };
    for (const Case& c : cases) {
        const ResultadoCalculo r
            = Calcula({ { 10, 40, 60 }, c.modo, linhaDe(npk("10-20-20", 10, 20, 20, 3000)) });
        ASSERT_FALSE(r.desfecho);
        EXPECT_EQ(r.txtFormula, c.dose);
        EXPECT_EQ(r.txtCusto, c.custo);
        EXPECT_EQ(r.txtForn, c.forn);
    }
    // The cost shown rests on the unrounded dose of 181.8 kg/ha.
    const ResultadoCalculo r
        = Calcula({ { 0, 40, 0 }, ModoCalculo::IntegralizarP, linhaDe(npk("0-22-0", 0, 22, 0, 2000)) });
    EXPECT_EQ(r.txtFormula, QStringLiteral("182"));
    EXPECT_EQ(r.txtCusto, QStringLiteral("363,64"));
}

TEST(FormulasTest, RefusalsLeaveNoResult)
{
    const LinhaFlx organico = linhaDe(npk("3,2-3,5-2,5", 3.2f, 3.5f, 2.5f, 275, QStringLiteral("0,5")));
    const LinhaFlx soN = linhaDe(npk("45-0-0", 45, 0, 0, 3547.5f));
    const LinhaFlx soP = linhaDe(npk("0-20-0", 0, 20, 0, 2000));
    struct Case {
        std::optional<ModoCalculo> modo;
        NPKkg nec;
        LinhaFlx linha;
        Desfecho desfecho;
    };
    const Case cases[] = {
        { std::nullopt, { 10, 40, 40 }, soP, Desfecho::aviso(kMsgSemModo) },
        { ModoCalculo::DiferencasIguais, { 10, 40, 40 }, organico, Desfecho::simples(kMsgOrganico) },
        { ModoCalculo::IntegralizarP, { 10, 40, 40 }, soN, Desfecho::informacao("Erro 11 Divisão por zero") },
        { ModoCalculo::IntegralizarK, { 10, 40, 40 }, soN, Desfecho::informacao("Erro 11 Divisão por zero") },
        { ModoCalculo::DiferencasIguais, { 10, 40, 40 }, soN, Desfecho::informacao("Erro 11 Divisão por zero") },
        { ModoCalculo::IntegralizarK, { 10, 40, 0 }, soP, Desfecho::informacao("Erro 6 Estouro") },
        { ModoCalculo::IntegralizarP, { 10, 40, 40 }, LinhaFlx {}, Desfecho::aviso(kMsgSemFertilizante) },
        { std::nullopt, { 10, 40, 40 }, LinhaFlx {}, Desfecho::aviso(kMsgSemModo) },
    };
    for (const Case& c : cases) {
        const ResultadoCalculo r = Calcula({ c.nec, c.modo, c.linha });
        EXPECT_EQ(r.desfecho, c.desfecho) << c.desfecho.texto.toStdString();
        EXPECT_TRUE(r.txtFormula.isEmpty() && r.txtForn[0].isEmpty());
    }
}

TEST(FormulasTest, QuestionOnlyBeyondTenKilogramsOfTheHalfToEvenBoxes)
{
    // 6.25 % N over 168 and 184 kg/ha supplies exactly 10.5 and 11.5 kg of N, with no N needed.
    const LinhaFlx linha = linhaDe(npk("6.25-25-25", 6.25f, 25, 25, 2000));
    const ResultadoCalculo meio = Calcula({ { 0, 42, 42 }, ModoCalculo::IntegralizarP, linha });
    EXPECT_EQ(meio.txtForn[0], QStringLiteral("10"));
    EXPECT_EQ(SituacaoFornecimento(meio.txtForn, { 0, 42, 42 }, meio.forn)[0].texto, kNaoRequer);
    // The question works on the rounded boxes: 10 kg over the need passes without it.
    EXPECT_FALSE(PerguntaFornecimento({ 0, 42, 42 }, FornecimentoDasCaixas(meio.txtForn)));

    const ResultadoCalculo acima = Calcula({ { 0, 46, 46 }, ModoCalculo::IntegralizarP, linha });
    EXPECT_EQ(acima.txtForn[0], QStringLiteral("12"));
    EXPECT_TRUE(PerguntaFornecimento({ 0, 46, 46 }, FornecimentoDasCaixas(acima.txtForn)));

    // Only beyond ten kilograms, on any nutrient.
    test::MachineLocale comma(test::commaLocale());
    EXPECT_FALSE(PerguntaFornecimento({ 20, 60, 60 }, { 10, 70, 50 }));
    EXPECT_TRUE(PerguntaFornecimento({ 20, 60, 60 }, { 20, 70.01f, 60 }));
    EXPECT_EQ(PerguntaFornecimento({ 20, 60, 60.5f }, { 20, 75, 60 }).value_or(Desfecho()).texto,
        QStringLiteral("A necessidade de N, P e K é de   20--60--60,5 kg/ha\n\n"
                       "As quantidades fonecidas de N, P e K são   20--75--60 kg/ha\n\n"
                       "CONTINUAR A RECOMENDAÇÃO COM ESTAS QUANTIDADES?"));
}

TEST(FormulasTest, StatusLabelsCompareTheRoundedBoxWithTheUnroundedSupply)
{
    struct Case {
        int nutriente;
        QString caixa;
        float nec, forn;
        QString texto;
        bool vermelho;
    };
    const Case cases[] = {
        { 0, "20", 10, 20.5f, "10 kg a mais", false },
        { 0, "22", 10, 21.5f, "12 kg a mais", true },
        { 0, "21", 10, 21.0f, "11 kg a mais", true },
        { 0, "5", 0, 5, "Não requer!", true },
        { 1, "5", 0, 5, "5 kg a mais", false },
        { 1, "40", 40.3f, 40.4f, "0 kg a menos", false },
        { 2, "28", 40, 28.5f, "12 kg a menos", true },
        { 2, "30", 40, 29.5f, "10 kg a menos", false },
        { 2, "20", 20, 20.2f, "Ideal", false },
    };
    for (const Case& c : cases) {
        std::array<QString, 3> caixas { "0", "0", "0" };
        NPKkg nec, forn;
        caixas[c.nutriente] = c.caixa;
        (c.nutriente == 0 ? nec.n : c.nutriente == 1 ? nec.p : nec.k) = c.nec;
        (c.nutriente == 0 ? forn.n : c.nutriente == 1 ? forn.p : forn.k) = c.forn;
        const auto situacoes = SituacaoFornecimento(caixas, nec, forn);
        EXPECT_EQ(situacoes[c.nutriente].texto, c.texto) << c.nutriente << " " << c.caixa.toStdString();
        EXPECT_EQ(situacoes[c.nutriente].vermelho, c.vermelho) << c.texto.toStdString();
    }
    // Before any calculation, and whenever the N box is empty.
    for (const SituacaoNutriente& s :
        SituacaoFornecimento({ "", "40", "40" }, { 0, 40, 40 }, { 0, 40, 40 })) {
        EXPECT_EQ(s.texto, kAcimaDoNormal);
        EXPECT_FALSE(s.vermelho);
    }
}

TEST(FormulasTest, SlotsOfTheFormulaAndTheWayOn)
{
    test::MachineLocale comma(test::commaLocale());
    Session s;
    preparaSessao(s, 2.5f, 1);

    // The saved cost per hectare rests on the rounded dose: 364, where the screen showed 363,64.
    const DestinoFormula destino = GravaFormula(s, { "0-22-0", "2000", "182" });
    EXPECT_TRUE(destino.fechaParcelamento && !destino.florestal);
    EXPECT_EQ(s.Dados[12], QVariant(QStringLiteral("0-22-0")));
    const QList<std::pair<int, float>> simples
        = { { 13, 2000.0f }, { 14, 182.0f }, { 15, 364.0f }, { 16, 455.0f }, { 17, 910.0f } };
    for (const auto& [slot, valor] : simples) {
        EXPECT_EQ(s.Dados[slot].typeId(), QMetaType::Float) << slot;
        EXPECT_EQ(s.Dados[slot].toFloat(), valor) << slot;
    }
    EXPECT_EQ(s.CustoBase, 910.0);
    EXPECT_EQ(s.PlanoNum, 1);
    EXPECT_EQ(s.TipoPlano, QStringLiteral("Fórmulas"));
    EXPECT_EQ(s.RefazPlano, 0);
    EXPECT_EQ(s.Dados[18], QVariant(0));

    // An area held as a double makes the products doubles; a second pass has nothing to close.
    s.Analise[6] = 2.5;
    EXPECT_FALSE(GravaFormula(s, { "0-22-0", "2000,5", "182" }).fechaParcelamento);
    EXPECT_EQ(s.Dados[16].typeId(), QMetaType::Double);
    EXPECT_DOUBLE_EQ(s.CustoBase, 455.0 * static_cast<double>(2000.5f / 1000.0f));
}

TEST(FormulasTest, ForestDressingTakesTheCostAndTwoGridRows)
{
    test::MachineLocale comma(test::commaLocale());
    Session s;
    preparaSessao(s, 2.0f, 4);
    s.EtapaFlorest = 2;
    EXPECT_TRUE(GravaFormula(s, { "5-20-20", "3327,5", "100" }).florestal);
    EXPECT_EQ(s.CustoEtapa2, s.CustoBase);
    EXPECT_EQ(s.CustoEtapa1 + s.CustoEtapa3, 0.0);
    EXPECT_EQ(s.PlanoNum, 0);
    EXPECT_EQ(s.RefazPlano, 1);
    const QList<QStringList> linhas = LinhasFlorestFormula(s);
    ASSERT_EQ(linhas.size(), 2);
    EXPECT_EQ(linhas[0].first(), QStringLiteral("Fórmula"));
    EXPECT_EQ(linhas[1], (QStringList { "5-20-20", "3327,5", "100", "332,75", "200", "665,5" }));
}

TEST(FormulasTest, VariantProductsFollowTheirOperands)
{
    test::MachineLocale comma(test::commaLocale());
    struct Case {
        QVariant a, b;
        int tipo;
        double valor;
    };
    const Case cases[] = {
        { 2.5f, 182.0f, QMetaType::Float, 455 },
        { 2.5, 182.0f, QMetaType::Double, 455 },
        { QVariant::fromValue<std::int16_t>(3), 2.5f, QMetaType::Float, 7.5 },
        { 3, 2.5f, QMetaType::Double, 7.5 },
        { QStringLiteral("2,5"), 4.0f, QMetaType::Double, 10 },
        { QVariant::fromValue<std::int16_t>(3), QVariant::fromValue<std::int16_t>(4), QMetaType::Short, 12 },
        { QVariant::fromValue<std::int16_t>(200), QVariant::fromValue<std::int16_t>(200), QMetaType::Int,
            40000 },
    };
    for (const Case& c : cases) {
        const QVariant produto = ProdutoVariant(c.a, c.b);
        EXPECT_EQ(produto.typeId(), c.tipo) << c.valor;
        EXPECT_EQ(produto.toDouble(), c.valor);
    }
    EXPECT_FALSE(ProdutoVariant(QVariant(), 2.0f).isValid());
}
