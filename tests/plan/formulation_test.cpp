#include "app/session.h"
#include "base/validation.h"
#include "plan/finish.h"
#include "plan/formulation.h"
#include "store/cursormodel.h"
#include "store/store.h"
#include "testsupport.h"

#include <gtest/gtest.h>

using namespace lavra;

namespace {

Insumo mineral(const QString& formula, const QString& nome, NPKkg teor, float preco)
{
    return { formula, nome, teor, 0.0f, preco, QStringLiteral("---"), QStringLiteral("---"), QStringLiteral("---"),
        QStringLiteral("---") };
}

// Grades and prices of the shipped rows; the manure's indices typed with both decimal signs.
TabelaFormulacao tabela()
{
    TabelaFormulacao t;
    t.linhas = { mineral("5-20-20", "Formulado NPK", { 5, 20, 20 }, 3327.5f),
        mineral("10-10-10", "Formulado NPK", { 10, 10, 10 }, 1000),
        mineral("45-0-0", "Ureia", { 45, 0, 0 }, 3547.5f),
        mineral("11-52-0", "Fosfato monoamônico", { 11, 52, 0 }, 5032.5f),
        mineral("0-18-0", "Superfosfato simples", { 0, 18, 0 }, 2145),
        mineral("0-0-60", "Cloreto de potássio", { 0, 0, 60 }, 2970),
        { "4-2-2", "Esterco", { 4, 2, 2 }, 1.0f, 110.0f, "50", "0,5", "0.8", "1" } };
    return t;
}

Escolha item(const QString& nome)
{
    return nome == kNenhuma ? Escolha::daLista(1, nome) : nome == kSelecione ? Escolha {} : Escolha::daLista(2, nome);
}

EntradaFormulacao entrada(NPKkg nec, const QString& produto, const QString& q, const QString& n, const QString& p,
    const QString& k)
{
    return { nec, item(produto), item(n), item(p), item(k), q };
}

using Linhas = std::vector<std::vector<QString>>;

Linhas linhas(const GradeResultado& grade)
{
    Linhas todas;
    for (const LinhaResultado& linha : grade)
        todas.emplace_back(linha.begin(), linha.end());
    return todas;
}

} // namespace

TEST(FormulationTest, NumbersKeptAsTextReadWithEitherSign)
{
    for (const bool comma : { true, false }) {
        test::MachineLocale locale(comma ? test::commaLocale() : test::pointLocale());
        EXPECT_EQ(Num_Ponto_Virgula(QStringLiteral("0,5")), 0.5f);
        EXPECT_EQ(Num_Ponto_Virgula(QStringLiteral("0.8")), 0.8f);
        EXPECT_EQ(Num_Ponto_Virgula(QStringLiteral(" 75 ")), 75.0f);
        for (const char* nada : { "---", "", "1.234,5" })
            EXPECT_FALSE(Num_Ponto_Virgula(QString::fromLatin1(nada))) << nada;
    }
}

TEST(FormulationTest, ShippedTableFillsTheFourLists)
{
    test::ScratchDatabase scratch;
    Store db(scratch.path());
    const TabelaFormulacao t = LeTabelaFormulacao(db);
    ASSERT_EQ(t.linhas.size(), scratch.scalar(QStringLiteral("SELECT COUNT(*) FROM NPK")).toInt());
    EXPECT_EQ(t.colunas.value(8), QStringLiteral("MS"));
    const ListasFormulacao l = ListasDaTabela(t);
    // Formulas by their grades, organic fertilisers by name, liquid ones without dry matter too.
    EXPECT_TRUE(l.produtos.contains(QStringLiteral("5-20-20")));
    EXPECT_TRUE(l.produtos.contains(QStringLiteral("Cama frango 3-4 lt")));
    EXPECT_TRUE(l.produtos.contains(QStringLiteral("Esterco líq. suínos")));
    EXPECT_FALSE(l.produtos.contains(QStringLiteral("Formulado NPK")));
    EXPECT_TRUE(l.fontesN.contains(QStringLiteral("Ureia")));
    EXPECT_FALSE(l.fontesN.contains(QStringLiteral("Nitrato de potássio")));
    EXPECT_TRUE(l.fontesP.contains(QStringLiteral("Fosfato monoamônico")));
    EXPECT_TRUE(l.fontesK.contains(QStringLiteral("Nitrato de potássio")));
    EXPECT_FALSE(l.fontesK.contains(QStringLiteral("Ureia")));
}

TEST(FormulationTest, RefusalsComeInTheirOrderAndLeaveNoGrid)
{
    test::MachineLocale comma(test::commaLocale());
    const NPKkg nec { 30, 80, 60 };
    struct Caso {
        EntradaFormulacao e;
        QString mensagem;
        QString campo;
    };
    const Caso casos[] = {
        { entrada(nec, kNenhuma, "", kNenhuma, kSelecione, kNenhuma), kMsgEscolhaFontes, "cboFtP" },
        { entrada(nec, kSelecione, "100", kNenhuma, kNenhuma, kNenhuma), kMsgEscolhaTodas, "cboFml" },
        { entrada(nec, "5-20-20", "100", "Ureia", kNenhuma, kSelecione), kMsgEscolhaTodas, "cboFtK" },
        { entrada(nec, "5-20-20", " ", kNenhuma, kNenhuma, kNenhuma), kMsgInformeQuantidade, "txtkgF2" },
        { entrada(nec, kNenhuma, "300", kNenhuma, kNenhuma, kNenhuma), kMsgImpossivel, "cboFml" },
        // Better than letting the calculation run on: a quantity that is no number is refused.
        { entrada(nec, "5-20-20", "1.5", kNenhuma, kNenhuma, kNenhuma), kMsgSimboloDecimal, "txtkgF2" },
        { entrada(nec, "5-20-20", "600000", kNenhuma, kNenhuma, kNenhuma), mensagemFaixa(Grandeza::DoseFertilizante),
            "txtkgF2" },
    };
    for (const Caso& c : casos) {
        const ResultadoFormulacao r = Calcula_Formulacao(tabela(), c.e);
        ASSERT_TRUE(r.desfecho) << c.mensagem.toStdString();
        EXPECT_EQ(r.desfecho->texto, c.mensagem);
        EXPECT_EQ(r.desfecho->campo, c.campo);
        EXPECT_TRUE(r.grade[0][0].isEmpty());
    }
    // Without a product the quantity becomes 0 before the last check refuses.
    EXPECT_EQ(Calcula_Formulacao(tabela(), casos[4].e).quantidade, QStringLiteral("0"));
}

TEST(FormulationTest, AFormulaCoveringPAndKLeavesItsSourcesAtZero)
{
    test::MachineLocale comma(test::commaLocale());
    const auto r = Calcula_Formulacao(tabela(),
        entrada({ 40, 100, 100 }, "5-20-20", "500", "Ureia", "Superfosfato simples", "Cloreto de potássio"));
    ASSERT_FALSE(r.desfecho);
    // N: 40 - 25 of the formula = 15 of urea, 33.3 kg; 500 x 3327.5 / 1000 = 1663.75.
    EXPECT_EQ(linhas(r.grade),
        (Linhas { { "5-20-20", "500", "25", "100", "100", "1664" }, { "Ureia", "33", "15", "0", "0", "118" },
            { "Superfosfato simples", "0", "0", "0", "0", "0" }, { "Cloreto de potássio", "0", "0", "0", "0", "0" },
            { "Totais", "533", "40", "100", "100", "1782" } }));
}

TEST(FormulationTest, PThenKThenN)
{
    test::MachineLocale comma(test::commaLocale());
    // The manure: 1000 kg at 50 % dry matter is 500 kg; N 4 % at an index of 0.5 gives 10 kg, a
    // quarter of the percentage per kilogram. P 2 % x 0.8 = 8, K 2 % x 1 = 10.
    const auto r = Calcula_Formulacao(tabela(),
        entrada({ 40, 60, 40 }, "Esterco", "1000", "Ureia", "Fosfato monoamônico", "Cloreto de potássio"));
    ASSERT_FALSE(r.desfecho);
    // MAP for 52 kg of P2O5: 100 kg, bringing 11 kg of N; KCl for 30 kg of K2O: 50 kg; urea for
    // the 19 kg of N left: 42.2 kg.
    EXPECT_EQ(linhas(r.grade),
        (Linhas { { "Esterco", "1000", "10", "8", "10", "110" }, { "Ureia", "42", "19", "0", "0", "150" },
            { "Fosfato monoamônico", "100", "11", "52", "0", "503" }, { "Cloreto de potássio", "50", "0", "0", "30", "148" },
            { "Totais", "1192", "40", "60", "40", "911" } }));

    // A need of N the MAP covers alone: the urea falls to 0 and the total shows the excess.
    const auto semUreia = Calcula_Formulacao(tabela(),
        entrada({ 5, 60, 40 }, "Esterco", "0", "Ureia", "Fosfato monoamônico", kNenhuma));
    ASSERT_FALSE(semUreia.desfecho);
    EXPECT_EQ(linhas(semUreia.grade)[1], (std::vector<QString> { "Ureia", "0", "0", "0", "0", "0" }));
    EXPECT_EQ(semUreia.grade[res::kTotais][res::kN], QStringLiteral("13"));
    EXPECT_EQ(linhas(semUreia.grade)[3], (std::vector<QString> { "Nenhuma", "0", "0", "0", "0", "0" }));
    EXPECT_EQ(semUreia.grade[res::kTotais][res::kK], QStringLiteral("0"));
}

TEST(FormulationTest, WholeNumbersRoundHalfToEvenButTheTypedQuantity)
{
    for (const bool comma : { true, false }) {
        test::MachineLocale locale(comma ? test::commaLocale() : test::pointLocale());
        const QString q = comma ? QStringLiteral("105,5") : QStringLiteral("105.5");
        // 10-10-10 at 105.5 kg: 10.55 kg of each, 105.5 R$; urea for 0.5 kg of N: 1.1 kg.
        auto r = Calcula_Formulacao(tabela(), entrada({ 11, 0, 0 }, "10-10-10", q, "Ureia", kNenhuma, kNenhuma));
        ASSERT_FALSE(r.desfecho);
        EXPECT_EQ(r.grade[0][1], q);
        EXPECT_EQ(r.grade[0][2], QStringLiteral("11"));
        EXPECT_EQ(r.grade[0][5], QStringLiteral("106"));
        EXPECT_EQ(r.grade[res::kTotais][res::kAplicar], comma ? QStringLiteral("106,5") : QStringLiteral("106.5"));
        // 10.5 and 11.5 kg: halves go to the even neighbour. No source at all: the product alone.
        r = Calcula_Formulacao(tabela(), entrada({ 0, 0, 0 }, "10-10-10", "105", kNenhuma, kNenhuma, kNenhuma));
        EXPECT_EQ(r.grade[0][2], QStringLiteral("10"));
        EXPECT_EQ(linhas(r.grade)[4], (std::vector<QString> { "Totais", "105", "10", "10", "10", "105" }));
        r = Calcula_Formulacao(tabela(), entrada({ 0, 0, 0 }, "10-10-10", "115", kNenhuma, kNenhuma, kNenhuma));
        EXPECT_EQ(r.grade[0][2], QStringLiteral("12"));
    }
}

TEST(FormulationTest, ASourceWithoutItsNutrientIsRefusedNamingIt)
{
    // A later row of the same name hides the right one: the last row wins, as the lists are built
    // by name, and this one has no K.
    TabelaFormulacao t = tabela();
    t.linhas << mineral("12-0-0", "Cloreto de potássio", { 12, 0, 0 }, 100);
    const auto r = Calcula_Formulacao(t, entrada({ 0, 0, 60 }, kNenhuma, "", kNenhuma, kNenhuma, "Cloreto de potássio"));
    ASSERT_TRUE(r.desfecho);
    EXPECT_TRUE(r.desfecho->texto.contains(QStringLiteral("(Cloreto de potássio) não contém K₂O")));
    EXPECT_EQ(r.desfecho->campo, QStringLiteral("cboFtK"));
}

TEST(FormulationTest, GoingOnAsksLikeTheFormulaStep)
{
    GradeResultado grade {};
    EXPECT_EQ(VerificaFormulacao(grade, {}).value().texto, kMsgSemCalculo);
    grade[res::kProduto][res::kFonte] = QStringLiteral("5-20-20");
    grade[res::kTotais] = { kTotais, "500", "40", "110", "90" };
    EXPECT_FALSE(VerificaFormulacao(grade, { 50, 100, 100 }));
    EXPECT_EQ(VerificaFormulacao(grade, { 51, 100, 100 }).value().tipo, TipoDesfecho::Pergunta);
}

TEST(FormulationTest, SavedRowHoldsTheFourBlocks)
{
    test::MachineLocale comma(test::commaLocale());
    test::ScratchDatabase scratch;
    Session session(scratch.path());
    session.limpaCalculo();
    session.Analise = QVector<QVariant>(36);
    session.Analise[0] = QStringLiteral("Santa Rita/Coxilha/15/08/2026");
    session.Analise[6] = 2.5f;
    session.Grupo = 1;
    session.RefazPlano = 1;
    session.Dados[1] = QStringLiteral("Milho");
    session.Dados[2] = QStringLiteral("Primeiro");

    // 2001 kg of 10-10-10 make 5002.5 kg in the plot: the product's quantity alone is whole.
    const auto r = Calcula_Formulacao(tabela(),
        entrada({ 300, 240, 200 }, "10-10-10", "2001", kNenhuma, "Fosfato monoamônico", "Cloreto de potássio"));
    ASSERT_FALSE(r.desfecho);
    const DestinoFormula destino = GravaFormulacao(session, tabela(), r.grade);
    EXPECT_TRUE(destino.fechaParcelamento);
    EXPECT_EQ(session.PlanoNum, 2);
    EXPECT_EQ(session.TipoPlano, QStringLiteral("Formulação"));
    EXPECT_EQ(session.RefazPlano, 0);
    EXPECT_EQ(session.Dados[16].typeId(), QMetaType::Int);
    EXPECT_EQ(session.Dados[28].typeId(), QMetaType::Float);
    EXPECT_EQ(session.Dados[19], QVariant(0));
    // The four rounded costs, 2001 + 0 + 386 + 0 R$/ha, over 2.5 ha.
    EXPECT_DOUBLE_EQ(session.CustoBase, 2.5 * (2001 + 386));

    ASSERT_FALSE(SalvaRecomendacao(session, QStringLiteral("15/10/2026")));
    Store db(scratch.path());
    db.AbreTabela(QStringLiteral("SELECT * FROM RecoFormulac;"));
    ASSERT_EQ(db.rs.columnCount(), 62);
    QStringList blocos;
    for (int c = 13; c <= 36; ++c)
        blocos << cellText(db.rs.value(c));
    db.fecha();
    // MAP for 240 - 200.1 kg of P2O5: 76.7 kg at 5032.5 R$/t; KCl has nothing left to give.
    EXPECT_EQ(blocos,
        QStringList({ "10-10-10", "1000", "2001", "2001", "5002", "5002,5", "Nenhuma", "0", "0", "0", "0", "0",
            "Fosfato monoamônico", "5032,5", "77", "386", "192,5", "965", "Cloreto de potássio", "2970", "0", "0",
            "0", "0" }));
}

TEST(FormulationTest, AForestDressingGoesToItsGrid)
{
    test::ScratchDatabase scratch;
    Session session(scratch.path());
    session.Analise = QVector<QVariant>(36);
    session.Analise[6] = 4.0f;
    session.Grupo = 4;
    session.EtapaFlorest = 2;
    session.PlanoNum = 3;
    const auto r = Calcula_Formulacao(tabela(), entrada({ 0, 36, 0 }, kNenhuma, "", kNenhuma, "Superfosfato simples", kNenhuma));
    ASSERT_FALSE(r.desfecho);
    EXPECT_TRUE(GravaFormulacao(session, tabela(), r.grade).florestal);
    EXPECT_EQ(session.PlanoNum, 3);
    // 200 kg of single superphosphate at 2145 R$/t: 429 R$/ha over 4 ha.
    EXPECT_DOUBLE_EQ(session.CustoEtapa2, 1716);
    const QList<QStringList> linhas = LinhasFlorestFormulacao(session);
    ASSERT_EQ(linhas.size(), 5);
    EXPECT_EQ(linhas[0].first(), QStringLiteral("Fontes"));
    EXPECT_EQ(linhas[3], QStringList({ "Superfosfato simples", "2145", "200", "429", "800", "1716" }));
}
