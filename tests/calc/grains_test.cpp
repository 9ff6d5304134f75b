#include "app/navigation.h"
#include "app/session.h"
#include "calc/crops.h"
#include "calc/grains.h"
#include "testsupport.h"

#include <gtest/gtest.h>

namespace lavra {

namespace {

using test::MachineLocale;

// An analysis by the classes the grain tables read: MO, P, K and CTC, with the clay, P, K and
// CTC that the gradual correction reads.
struct Classes {
    int mo = 3;
    int p = 2;
    int k = 3;
    int ctc = 3;
};

class GrainsTest : public ::testing::Test {
protected:
    GrainsTest()
        : session(scratch.path())
    {
        analise({});
    }

    void analise(const Classes& c, float argila = 30, float fosforo = 10, float potassio = 80, float ctc = 10)
    {
        session.Analise = test::analiseComClasses(c.mo, c.p, c.k);
        session.Analise[15] = ctc;
        session.Analise[18] = argila;
        session.Analise[19] = fosforo;
        session.Analise[20] = potassio;
        session.Analise[33] = c.ctc;
        session.Cultivo = 1;
        session.Grupo = 1;
        // As the window does when it loads.
        CarregaCorrecaoOficial(session);
        CarregaCorrecaoGradual(session);
    }

    CalculoGraos calcula(int posicao, const QString& e, const QString& anterior = {}, const QString& ms = {},
        int sistema = 0, bool gradual = false)
    {
        DefinicoesGraos d;
        d.posicao = posicao;
        d.expectativa = e;
        d.cultivoAnterior = anterior;
        d.massaSeca = ms;
        d.sistemaSemeadura = sistema;
        d.textoSistema = sistemasSemeadura().value(sistema);
        d.ajusteGradual = gradual;
        return CalculaGraos(session.db, session, d);
    }

    static QStringList lista(const TextosNec& nec) { return { nec[0], nec[1], nec[2], nec[3] }; }

    MachineLocale ponto { test::pointLocale() };
    test::ScratchDatabase scratch;
    Session session;
};

const QString G = QStringLiteral("Gramíneas");
const QString L = QStringLiteral("Leguminosas");
const QString CP = QStringLiteral("Consórcio ou pousio");

// Analysis classes: MO 3 (N total of column 5), P 2 (B), K 3 (M), CTC 3; first crop; official
// rule. Expected figures worked out from the shipped rows: N base, P base, K base, N cob.
struct Caso {
    const char* nome;
    int posicao;
    QString e;
    QString anterior;
    QString ms;
    int sistema;
    QString chaveN;
    QStringList nec;
};

TEST_F(GrainsTest, NeedsFromTheManualRows)
{
    const QList<Caso> casos = {
        // Soja: N 0 without a row; P ref 2 + 15/t, B 70; K ref 2 + 25/t, M 75.
        { "soja acima da referencia", graos::Soja, "3", {}, {}, 0, "Soja", { "0", "85", "100", "0" } },
        { "soja na referencia", graos::Soja, "2", {}, {}, 0, "Soja", { "0", "70", "75", "0" } },
        // TrigoG: ref 3, 30/t, base 20, total 60; P B 85 + 15/t, K M 60 + 10/t. (TrigoL: below.)
        // (4.6 - 3) x 30 is 47.99999999999999 in binary: the box shows 88.
        { "trigo fracionario", graos::Trigo, "4.6", G, {}, 0, "TrigoG", { "20", "109", "76", "88" } },
        // Milho: ref 4, base 20, totals G 70, L 50, CP 60; P B 85, K M 60. Dry mass moves both N.
        { "milho G 1.9", graos::Milho, "4", G, "1.9", 0, "MilhoG", { "20", "85", "60", "50" } },
        { "milho G 2", graos::Milho, "4", G, "2", 0, "MilhoG", { "25", "85", "60", "55" } },
        { "milho G 4", graos::Milho, "4", G, "4", 0, "MilhoG", { "25", "85", "60", "55" } },
        { "milho G 4.1", graos::Milho, "4", G, "4.1", 0, "MilhoG", { "30", "85", "60", "60" } },
        { "milho CP 3", graos::Milho, "4", CP, "3", 0, "MilhoCP", { "25", "85", "60", "45" } },
        { "milho L 2", graos::Milho, "4", L, "2", 0, "MilhoL", { "15", "85", "60", "25" } },
        { "milho L 3.1", graos::Milho, "4", L, "3.1", 0, "MilhoL", { "10", "85", "60", "20" } },
        // RS rice: the increment is the key; row (RS)3 base 10, total 80; P B 50; K (RS)13 M 55.
        { "arroz RS seco", graos::ArrozIrrigadoRS, "3", {}, {}, 1, "Arroz irrigado (RS)3", { "10", "50", "55", "70" } },
        { "arroz RS pre", graos::ArrozIrrigadoRS, "3", {}, {}, 2, "Arroz irrigado (RS)3", { "0", "50", "55", "80" } },
        // SC rice: band 1 up to 9 t/ha, band 2 above; no addition per tonne.
        { "arroz SC 9", graos::ArrozIrrigadoSC, "9", {}, {}, 1, "Arroz irrigado (SC)1", { "10", "50", "55", "70" } },
        { "arroz SC 9.1", graos::ArrozIrrigadoSC, "9.1", {}, {}, 1, "Arroz irrigado (SC)2", { "10", "60", "70", "100" } },
    };
    for (const Caso& c : casos) {
        SCOPED_TRACE(c.nome);
        session.RefazPlano = 0;
        EXPECT_EQ(chavesGraos({ c.posicao, c.e, c.anterior, 3, 1 }).n.chave, c.chaveN);
        const CalculoGraos r = calcula(c.posicao, c.e, c.anterior, c.ms, c.sistema);
        ASSERT_FALSE(r.desfecho) << r.desfecho->texto.toStdString();
        EXPECT_EQ(lista(r.nec), c.nec);
        EXPECT_EQ(r.comCorrecao, !arrozIrrigado(c.posicao));
        EXPECT_EQ(session.RefazPlano, 1);
    }
}

TEST_F(GrainsTest, RsRicePotassiumSplitsOnTheCtcClass)
{
    // Classes P 3 and K 4: (RS)2 P 30, K (RS)12 and (RS)22 both A 20 (the keys: crops_test).
    analise({ 3, 3, 4, 4 });
    EXPECT_EQ(
        lista(calcula(graos::ArrozIrrigadoRS, "2", {}, {}, 1).nec), QStringList({ "10", "30", "20", "40" }));
    // A row that only the high CTC reads: its figures must be the ones shown.
    scratch.exec(QStringLiteral("UPDATE GRAOKC1 SET Classe4 = 99 WHERE Chave = 'Arroz irrigado (RS)22'"));
    EXPECT_EQ(calcula(graos::ArrozIrrigadoRS, "2", {}, {}, 1).nec[2], QStringLiteral("99"));
}

TEST_F(GrainsTest, SecondCropReadsTheTablesOfDigitTwoButRiceDoesNot)
{
    session.Cultivo = 2;
    // GRAOPC2 Soja B 50 + 15/t; GRAOKC2 Soja M 45 + 25/t.
    EXPECT_EQ(lista(calcula(graos::Soja, "3").nec), QStringList({ "0", "65", "70", "0" }));
    EXPECT_EQ(session.CultivoTxt, QStringLiteral("2"));

    EXPECT_EQ(
        lista(calcula(graos::ArrozIrrigadoRS, "3", {}, {}, 1).nec), QStringList({ "10", "50", "55", "70" }));
    EXPECT_EQ(session.CultivoTxt, QStringLiteral("1"));
}

TEST_F(GrainsTest, CorrectionTablesOfBothRules)
{
    struct Linha {
        const char* nome;
        int cultivo;
        float fosforo;
        Classes classes;
        std::array<QString, 6> oficial;
        std::array<QString, 6> gradual;
    };
    // Clay 30: y1 13.27092, y2 4.45373. P 10 gives 33.387, P 6.07 gives 73.502 and P 3 lies under
    // y2 (120). The lower-case potassium name always gives 0.
    const QList<Linha> linhas = {
        { "M, primeiro", 1, 10, { 3, 3, 3, 3 }, { "30", "todo", "30", "30", "todo", "30" },
            { "33", "todo", "33", "0", "sem", "0" } },
        { "M, segundo", 2, 10, { 3, 3, 3, 3 }, { "30", "sem", "0", "30", "sem", "0" },
            { "33", "sem", "0", "0", "sem", "0" } },
        // 2 x 73 / 3 = 48.67: the dose now drops its decimals.
        { "B, primeiro", 1, 6.07f, { 3, 2, 1, 3 }, { "60", "2/3", "40", "120", "2/3", "80" },
            { "73", "2/3", "48", "0", "sem", "0" } },
        { "MB, segundo", 2, 3, { 3, 1, 5, 3 }, { "120", "1/3", "40", "0", "sem", "0" },
            { "120", "1/3", "40", "0", "sem", "0" } },
    };
    for (const Linha& l : linhas) {
        SCOPED_TRACE(l.nome);
        analise(l.classes, 30, l.fosforo, 10);
        session.Cultivo = static_cast<std::int16_t>(l.cultivo);
        CarregaCorrecaoOficial(session);
        CarregaCorrecaoGradual(session);
        EXPECT_EQ(AplicaCorrecao(session.TabCorrecao, false), l.oficial);
        EXPECT_EQ(AplicaCorrecao(session.TabCorrecao, true), l.gradual);
    }
}

TEST_F(GrainsTest, GradualRuleSwapsTheOfficialDoseOut)
{
    // Soja at its reference with P and K of class M: table P 60 and K 75 hold 30 each of the
    // official correction; the gradual P dose of P 10 on clay 30 is 33, and of K always 0.
    analise({ 3, 3, 3, 3 }, 30, 10, 10);
    EXPECT_EQ(lista(calcula(graos::Soja, "2").nec), QStringList({ "0", "60", "75", "0" }));
    EXPECT_EQ(lista(calcula(graos::Soja, "2", {}, {}, 0, true).nec), QStringList({ "0", "63", "45", "0" }));
    // Rice has no correction, whichever option is on.
    const CalculoGraos arroz = calcula(graos::ArrozIrrigadoSC, "9", {}, {}, 1, true);
    EXPECT_FALSE(arroz.comCorrecao);
    EXPECT_EQ(arroz.nec[1], QStringLiteral("40"));
}

TEST_F(GrainsTest, InputsAreCheckedInTheWindowsOrder)
{
    struct Recusada {
        int posicao;
        QString e;
        QString anterior;
        QString ms;
        int sistema;
        QString mensagem;
        TipoDesfecho tipo;
        bool limpa;
    };
    const QString incremento = QStringLiteral(" Na cultura Arroz irrigado (RS) são permitidos incrementos de "
                                              "rendimento de 2, 3 ou 4 t/ha. Ajuste o valor.");
    const QList<Recusada> casos = {
        { -1, "", {}, {}, 0, kMsgInformeExpectativa, TipoDesfecho::Aviso, false },
        { graos::ArrozIrrigadoRS, "2.5", {}, {}, 1, incremento, TipoDesfecho::Informacao, true },
        { graos::ArrozIrrigadoRS, "5", {}, {}, 0, incremento, TipoDesfecho::Informacao, true },
        { -1, "3", {}, {}, 0, kMsgSelecioneCultura, TipoDesfecho::Aviso, false },
        { graos::ArrozIrrigadoRS, "3", {}, {}, 0, kMsgSelecioneSemeadura, TipoDesfecho::Aviso, false },
        { graos::ArrozIrrigadoSC, "12", {}, {}, 0, kMsgSelecioneSemeadura, TipoDesfecho::Aviso, false },
        { graos::Cevada, "3", {}, {}, 0, kMsgSelecioneCultivoAnterior, TipoDesfecho::Aviso, false },
        { graos::Milho, "3", {}, {}, 0, kMsgSelecioneCultivoAnterior, TipoDesfecho::Aviso, false },
        { graos::Milho, "3", G, {}, 0, kMsgInformeMassaSeca, TipoDesfecho::Aviso, false },
    };
    for (const Recusada& c : casos) {
        SCOPED_TRACE(c.mensagem.toStdString());
        const CalculoGraos r = calcula(c.posicao, c.e, c.anterior, c.ms, c.sistema);
        ASSERT_TRUE(r.desfecho);
        EXPECT_EQ(r.desfecho->texto, c.mensagem);
        EXPECT_EQ(r.desfecho->tipo, c.tipo);
        EXPECT_EQ(r.limpaExpectativa, c.limpa);
        EXPECT_FALSE(r.substituiResultado);
        EXPECT_EQ(session.RefazPlano, 0);
    }
    // SC rice takes any figure; an empty box is left to the check before this one.
    EXPECT_FALSE(recusaIncrementoArroz(graos::ArrozIrrigadoSC, "2.5"));
    EXPECT_FALSE(recusaIncrementoArroz(graos::ArrozIrrigadoRS, ""));
}

TEST_F(GrainsTest, MissingRowLeavesItsBoxEmptyUntilASumNeedsIt)
{
    scratch.exec(QStringLiteral("DELETE FROM GRAOPC1 WHERE Chave = 'Soja'"));
    CalculoGraos r = calcula(graos::Soja, "3");
    EXPECT_FALSE(r.desfecho);
    EXPECT_EQ(lista(r.nec), QStringList({ "0", "", "100", "0" }));
    // The gradual rule subtracts from that box.
    r = calcula(graos::Soja, "3", {}, {}, 0, true);
    ASSERT_TRUE(r.desfecho);
    EXPECT_EQ(r.desfecho->tipo, TipoDesfecho::Critico);
    EXPECT_TRUE(r.desfecho->texto.contains(QStringLiteral("GRAOPC1")));
    EXPECT_TRUE(r.substituiResultado);
    EXPECT_EQ(lista(r.nec), QStringList({ "", "", "", "" }));

    scratch.exec(QStringLiteral("DELETE FROM GRAON WHERE Chave = 'MilhoG'"));
    EXPECT_EQ(lista(calcula(graos::Milho, "4", G, "1.9").nec), QStringList({ "", "85", "60", "" }));
    EXPECT_TRUE(calcula(graos::Milho, "4", G, "2").desfecho);

    // An increment typed as "3.0" passes the check but finds no row; pre-germinated rice sums on it.
    EXPECT_EQ(lista(calcula(graos::ArrozIrrigadoRS, "3.0", {}, {}, 1).nec), QStringList({ "", "", "", "" }));
    r = calcula(graos::ArrozIrrigadoRS, "3.0", {}, {}, 2);
    ASSERT_TRUE(r.desfecho);
    EXPECT_TRUE(r.desfecho->texto.contains(QStringLiteral("Arroz irrigado (RS)3.0")));
}

TEST_F(GrainsTest, NumbersFollowTheMachinesDecimalSymbol)
{
    MachineLocale virgula(test::commaLocale());
    // TrigoL: 20/t over ref 3, total 40; half a tonne gives a P with decimals.
    EXPECT_EQ(lista(calcula(graos::Trigo, "3,3", L).nec), QStringList({ "20", "89,5", "63", "26" }));
    EXPECT_EQ(textoNumero(-0.0), QStringLiteral("0"));
    EXPECT_EQ(textoNumero(66.666666666666671), QStringLiteral("66,6666666666667"));
}

TEST_F(GrainsTest, ProceedWritesTheSlotsAndClosesAStalePlan)
{
    test::FakeHost janelas;
    janelas.open = { QStringLiteral("frmLavra"), QStringLiteral("frmGraos"), QStringLiteral("frmNPK"),
        QStringLiteral("frmParcelaN") };
    DefinicoesGraos d;
    d.posicao = graos::ArrozIrrigadoRS;
    d.expectativa = QStringLiteral("3");
    d.sistemaSemeadura = 2;
    d.textoSistema = QStringLiteral("Pré-germinado");

    // Nothing is written while the need is missing or incomplete.
    EXPECT_EQ(ProssegueGraos(session, janelas, d, { "", "50", "55", "80" })->texto, kMsgNaoCalculada);
    EXPECT_EQ(ProssegueGraos(session, janelas, d, { "0", "", "55", "80" })->texto, kMsgResultadoIncompleto);
    EXPECT_EQ(session.Dados[1], QVariant(0));
    EXPECT_FALSE(session.Nec[0].isValid());

    session.RefazPlano = 1;
    EXPECT_FALSE(ProssegueGraos(session, janelas, d, { "0", "50", "55.5", "80" }));
    EXPECT_EQ(session.Dados[1].toString(), QStringLiteral("Arroz irrigado (RS) - Pré-germinado"));
    EXPECT_EQ(session.Dados[4].typeId(), QMetaType::Float);
    EXPECT_EQ(session.Dados[4].toFloat(), 3.0f);
    const std::array<float, 4> nec = { 0, 50, 55.5f, 80 };
    for (std::size_t i = 0; i < nec.size(); ++i) {
        EXPECT_EQ(session.Nec[i].typeId(), QMetaType::Float);
        EXPECT_EQ(session.Nec[i].toFloat(), nec[i]);
    }
    EXPECT_EQ(janelas.closed, QStringList({ "frmNPK", "frmParcelaN" }));
    EXPECT_EQ(session.RefazPlano, 0);

    // Unchanged need: the plan stays open.
    janelas.open << QStringLiteral("frmNPK");
    d.posicao = graos::Milho;
    d.expectativa = QStringLiteral("7.5");
    EXPECT_FALSE(ProssegueGraos(session, janelas, d, { "20", "85", "60", "50" }));
    EXPECT_EQ(session.Dados[1].toString(), QStringLiteral("Milho"));
    EXPECT_EQ(session.Dados[4].toFloat(), 7.5f);
    EXPECT_TRUE(janelas.open.contains(QStringLiteral("frmNPK")));
}

TEST_F(GrainsTest, GrainCalculationKeepsTheAdjustmentNoteOthersDropIt)
{
    session.ObsAjuste = kObsAjuste;
    calcula(graos::Soja, "3");
    EXPECT_EQ(session.ObsAjuste, kObsAjuste);
    NecessidadeRecalculada(session, false);
    EXPECT_TRUE(session.ObsAjuste.isEmpty());
    EXPECT_EQ(session.RefazPlano, 1);
}

TEST(AdjustmentTest, ChecksEmptinessBeforeNumbers)
{
    const QStringList campos = { "a", "b", "c", "d" };
    EXPECT_EQ(VerificaAjuste({ "1", "x", "", "2" }, campos), Desfecho::aviso(kMsgCamposVazios, "c"));
    EXPECT_EQ(VerificaAjuste({ "1", "x", "0", "2" }, campos), Desfecho::aviso(kMsgCamposNaoNumericos, "b"));
    EXPECT_EQ(VerificaAjuste({ "0", "0", "0", "0" }), std::nullopt);
}

TEST(AdjustmentTest, TheBoxesGoToNecAsTheyStand)
{
    MachineLocale ponto(test::pointLocale());
    Session session;
    CopiaParaNec(session, { "20", "85.5", "", "Consultar MAC" });
    EXPECT_EQ(session.Nec[0], QVariant(20.0f));
    EXPECT_EQ(session.Nec[1], QVariant(85.5f));
    EXPECT_EQ(session.Nec[2], QVariant(QString()));
    EXPECT_EQ(session.Nec[3], QVariant(QStringLiteral("Consultar MAC")));
}

} // namespace
} // namespace lavra
