#include "exchange/migration.h"
#include "exchange/workbook.h"
#include "registers/analysis.h"
#include "store/store.h"
#include "store/storeerror.h"
#include "oldworkbook.h"
#include "testsupport.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace lavra {
namespace {

using test::PastaAnterior;

Celula texto(const QString& t) { return {Celula::Tipo::Texto, 0, t}; }
Celula numero(double n) { return {Celula::Tipo::Numero, n, {}}; }

TEST(MigrationConverters, EmptyCellsAndTextsAsTheSpreadsheetEditionTookThem)
{
    for (const QLocale& locale : {test::commaLocale(), test::pointLocale()}) {
        test::MachineLocale maquina(locale);
        const QString metade = locale.decimalPoint() == QLatin1String(",") ? QStringLiteral("12,5")
                                                                           : QStringLiteral("12.5");
        EXPECT_FLOAT_EQ(IfTxtThenValSing(texto(metade)), 12.5f);
        // Never read under the other decimal convention: it is no number, so 0.
        EXPECT_EQ(IfTxtThenValSing(texto(locale.decimalPoint() == QLatin1String(",") ? QStringLiteral("12.5")
                                                                                     : QStringLiteral("12,5"))),
                  0.0f);
    }
    EXPECT_EQ(IfTxtThenValSing(texto(QStringLiteral("-"))), 0.0f);
    EXPECT_EQ(IfTxtThenValDobl(texto(QStringLiteral("R$ 10"))), 0.0);
    EXPECT_EQ(IfTxtThenValDobl(Celula{}), 0.0);
    EXPECT_EQ(IfTxtThenValDobl(numero(0.1)), 0.1);
    EXPECT_EQ(IfTxtThenValSing(numero(0.1)), 0.1f);

    EXPECT_EQ(SemVazio(Celula{}), QStringLiteral("???"));
    EXPECT_EQ(SemVazio(texto(QStringLiteral("  "))), QStringLiteral("???"));
    EXPECT_EQ(SeVazioThenTraço(Celula{}), QStringLiteral("---"));
    EXPECT_EQ(SeVazioThenTraço(texto(QStringLiteral("Ureia"))), QStringLiteral("Ureia"));
    EXPECT_EQ(SemVazio(numero(95010000)), QStringLiteral("95010000"));
}

TEST(MigrationConverters, FormulasAreToldFromNitrogenSources)
{
    for (const char* formula : {"5-20-20", "0-20-20", "0-0-10", "5-20-20S", "10-20-10 S"})
        EXPECT_EQ(TestaFormulaOuFonteN(QString::fromUtf8(formula)), QStringLiteral("Formula")) << formula;
    for (const char* fonte : {"45-0-0", "0-0-0", "10-0-10", "Ureia", "5-20", "", "5-20-0S", "5-0-20S", "N-20-20",
                              "5-20-20-5"})
        EXPECT_EQ(TestaFormulaOuFonteN(QString::fromUtf8(fonte)), QStringLiteral("FontN")) << fonte;
}

// The same two rows of each kind that a user of the spreadsheet edition would have.
PastaAnterior pastaDeExemplo()
{
    PastaAnterior p;
    const QStringList empresa = {"Agro Sul", "Rua das Flores", "120", "95010-000", "Caxias do Sul", "Centro", "RS", "(54) 3222-1000"};
    const int linhas[] = {34, 35, 36, 38, 39, 37, 40, 43};
    for (int i = 0; i < 8; ++i)
        p.poe(linhas[i], QStringLiteral("AG"), empresa[i]);

    p.poe(99, "V", QStringLiteral("Não lido"));
    p.poe(100, "V", QStringLiteral("João da Silva"));
    p.poe(5100, "V", QStringLiteral("Maria Souza"));

    const auto analise = [&p](int linha, const QString& codigo, const QVariant& ph) {
        const QVariantList v = {codigo, QStringLiteral("Coxilha"), QStringLiteral("Faz. Boa Vista"), QStringLiteral("Gleba 1"),
                                QDate(2005, 8, 15), 12.5, QStringLiteral("1234"), ph, 4.1, 1.6, 0.3, 4.4, 62.5, 10.6,
                                5.8, 2.9, 35, 8.2, 120};
        // The saturation by bases and the CTC were worked out by the sheet's own formulas.
        for (int k = 0; k < v.size(); ++k)
            p.poe(linha, PastaAnterior::letras(k + 1), k == 12 || k == 13 ? QVariant::fromValue(test::FormulaXls{v[k]}) : v[k]);
        p.poe(linha, "T", QStringLiteral("João da Silva"));
    };
    analise(2, QStringLiteral("BV-1-15/08/2005"), 5.4);
    analise(3, QStringLiteral("BV-2-15/08/2005"), 5.1);
    analise(5, QStringLiteral("BV-3-15/08/2005"), QStringLiteral("5,x"));  // not a number: refused
    p.poe(30000, "A", QStringLiteral("BV-4-15/08/2005"));

    p.poe(2, "CT", 5);
    p.poe(2, "CU", 20);
    p.poe(2, "CV", 20);
    p.poe(2, "CW", QStringLiteral("Para exemplo"));
    p.poe(200, "CT", 2);
    p.poe(200, "CU", 30);
    p.poe(200, "CV", 0);
    p.poe(200, "CW", QStringLiteral("Fórmula especial"));
    p.poe(2, "DH", QStringLiteral("Sulfato de amônio"));
    p.poe(2, "DI", 20);
    p.poe(50, "DJ", QStringLiteral("Fosfato natural"));
    p.poe(50, "DK", 28);
    p.poe(50, "DL", 0);
    p.poe(3, "DM", QStringLiteral("Cloreto de potássio"));
    p.poe(3, "DN", 60);
    p.poe(3, "DO", 0);

    // Two recommendations by formulas, the second a repetition of the first, and one of rice.
    for (const int linha : {4, 5, 65535}) {
        for (int c = PastaAnterior::coluna("FH"); c <= PastaAnterior::coluna("GQ"); ++c)
            p.poe(linha, PastaAnterior::letras(c), c + 0.5);
        p.poe(linha, "FC", linha == 65535 ? QStringLiteral("BV-2-15/08/2005") : QStringLiteral("BV-1-15/08/2005"));
        p.poe(linha, "FE", linha == 65535 ? QStringLiteral("Arroz irrigado") : QStringLiteral("Soja"));
        p.poe(linha, "FF", 1);
        p.poe(linha, "FG", QDate(2005, 11, 10));
        p.poe(linha, "FO", QVariant::fromValue(test::FormulaXls{QStringLiteral("5-20-20")}));
        p.poe(linha, "FU", QString());
        p.poe(linha, "FP", QStringLiteral("-"));
    }
    // By formulation: one with a formula in its base dressing, one with a nitrogen source.
    for (const int linha : {4, 6}) {
        for (int c = PastaAnterior::coluna("GW"); c <= PastaAnterior::coluna("IR"); ++c)
            p.poe(linha, PastaAnterior::letras(c), c + 0.25);
        p.poe(linha, "GR", QStringLiteral("BV-1-15/08/2005"));
        p.poe(linha, "GT", QStringLiteral("Milho"));
        p.poe(linha, "GU", linha);
        p.poe(linha, "GV", QStringLiteral("01/10/2005"));
        p.poe(linha, "HD", linha == 4 ? QStringLiteral("10-20-20") : QStringLiteral("Ureia"));
    }
    return p;
}

class MigrationTest : public ::testing::Test {
protected:
    test::ScratchDatabase scratch;
    Store db{scratch.path()};
    QTemporaryDir dir;
    int perguntas = 0;
    bool resposta = true;

    RelatorioMigracao transfere(const PastaAnterior& p, std::function<bool(int)> passo = {})
    {
        const QString caminho = dir.filePath(kPastaAnterior);
        EXPECT_TRUE(p.grava(caminho));
        const Pasta pasta = abrePasta(caminho);
        const Planilha* lavra = pasta.planilha(kPlanilhaAnterior);
        EXPECT_TRUE(lavra && TestaPlanilha(*lavra));
        ProgressoMigracao progresso;
        progresso.passo = std::move(passo);
        progresso.substituiFertilizantes = [this] {
            ++perguntas;
            return resposta;
        };
        return TransfereDados(db, *lavra, progresso);
    }
    QVariant sql(const QString& s) const { return scratch.scalar(s); }
    int conta(const QString& tabela) const { return sql(QStringLiteral("SELECT COUNT(*) FROM ") + tabela).toInt(); }
};

TEST_F(MigrationTest, CompanyClientsAndAnalysesComeOverAtTheirCells)
{
    scratch.exec(QStringLiteral("INSERT INTO Clientes VALUES ('JOÃO DA SILVA', 'a', 'b', 'c', 'd')"));
    const int clientes = conta(QStringLiteral("Clientes"));
    const RelatorioMigracao r = transfere(pastaDeExemplo());

    EXPECT_TRUE(r.empresa);
    EXPECT_EQ(conta(QStringLiteral("Empresa")), 1);
    EXPECT_EQ(sql(QStringLiteral("SELECT Empresa || '|' || Rua || '|' || Numero || '|' || CEP || '|' || Cidade || '|' "
                                 "|| Bairro || '|' || Estado || '|' || Telefone || '|' || Email || '|' || Site FROM Empresa")),
              QStringLiteral("Agro Sul|Rua das Flores|120|95010-000|Caxias do Sul|Centro|RS|(54) 3222-1000|???|???"));

    // Row 99 is not read; a client of other capitals is the same client.
    EXPECT_EQ(conta(QStringLiteral("Clientes")), clientes + 1);
    EXPECT_EQ(sql(QStringLiteral("SELECT \"Rua/Localidade\" || Cidade FROM Clientes WHERE Nome = 'Maria Souza'")),
              QStringLiteral("??????"));
    EXPECT_EQ(r.contagem(QStringLiteral("Clientes")).existentes, 1);

    const ContagemMigracao& analises = r.contagem(QStringLiteral("Analises"));
    EXPECT_EQ(analises.adicionadas, 3);
    EXPECT_EQ(analises.recusadas, 1);
    ASSERT_EQ(r.recusas.size(), 1);
    EXPECT_TRUE(r.recusas[0].contains(QStringLiteral("H5"))) << qPrintable(r.recusas[0]);

    const QVector<QVariant> a = LeAnalise(db, QStringLiteral("BV-1-15/08/2005"));
    MedidasAnalise m;
    m.area = 12.5f, m.pH = 5.4f, m.ca = 4.1f, m.mg = 1.6f, m.al = 0.3f, m.hAl = 4.4f, m.bases = 62.5f, m.ctc = 10.6f;
    m.smp = 5.8f, m.mo = 2.9f, m.argila = 35, m.p = 8.2f, m.k = 120, m.metodoP = 1, m.condicao = 1;
    QVector<QVariant> esperada = LinhaAnalise({QStringLiteral("BV-1-15/08/2005"), QStringLiteral("João da Silva"),
                                               QStringLiteral("Coxilha"), QStringLiteral("Faz. Boa Vista"),
                                               QStringLiteral("Gleba 1"), QDate(2005, 8, 15), QStringLiteral("1234")},
                                              m);
    esperada[23] = 1;
    ASSERT_EQ(a.size(), esperada.size());
    for (int o = 0; o < a.size(); ++o)
        EXPECT_EQ(a[o].toString(), esperada[o].toString()) << "ordinal " << o;

    // The rice recommendation of the second analysis makes its area one of rice, and its P class
    // is read from the rice table.
    const QVector<QVariant> arroz = LeAnalise(db, QStringLiteral("BV-2-15/08/2005"));
    EXPECT_EQ(arroz[22].toInt(), 2);
    EXPECT_EQ(LeAnalise(db, QStringLiteral("BV-4-15/08/2005"))[5].toDate(), QDate(1900, 1, 1));
}

TEST_F(MigrationTest, FertilisersAndRecommendationsComeOverAtTheirCells)
{
    const int npk = conta(QStringLiteral("NPK"));
    const RelatorioMigracao r = transfere(pastaDeExemplo());
    EXPECT_EQ(perguntas, 1) << "the database came with 5-20-20";
    EXPECT_EQ(r.contagem(QStringLiteral("NPK")).adicionadas + r.contagem(QStringLiteral("NPK")).substituidas, 5);
    EXPECT_EQ(conta(QStringLiteral("NPK")), npk + r.contagem(QStringLiteral("NPK")).adicionadas);
    const auto fertilizante = [this](const QString& especificacao) {
        return sql(QStringLiteral("SELECT \"Fórmula\" || '|' || N || '|' || P || '|' || K || '|' || \"P/K\" || '|' || "
                                  "\"R$/t\" || '|' || MS FROM NPK WHERE \"Especificação\" = '%1'")
                       .arg(especificacao))
            .toString();
    };
    EXPECT_EQ(fertilizante(QStringLiteral("Fórmula")), QStringLiteral("5-20-20|5|20|20|1|0|0"));
    EXPECT_EQ(fertilizante(QStringLiteral("Fórmula especial")), QStringLiteral("2-30-0|2|30|0|0|0|0"));
    EXPECT_EQ(fertilizante(QStringLiteral("Sulfato de amônio")), QStringLiteral("20-0-0|20|0|0|0|0|0"));
    EXPECT_EQ(fertilizante(QStringLiteral("Fosfato natural")), QStringLiteral("0-28-0|0|28|0|0|0|0"));
    EXPECT_EQ(fertilizante(QStringLiteral("Cloreto de potássio")), QStringLiteral("0-0-60|0|0|60|0|0|0"));

    // The repeated pair comes once; row 65535 is read.
    EXPECT_EQ(r.contagem(QStringLiteral("RecoForm")).adicionadas, 2);
    EXPECT_EQ(r.contagem(QStringLiteral("RecoForm")).existentes, 1);
    // Every column of the row as SQL writes it: texts quoted, numbers as they are stored.
    const auto reco = [this](const QString& tabela, const QString& cultivo) {
        QVector<QVariant> v;
        const QStringList nomes = sql(QStringLiteral("SELECT group_concat(name, '|') FROM pragma_table_info('%1')")
                                          .arg(tabela))
                                      .toString()
                                      .split(QLatin1Char('|'));
        for (const QString& nome : nomes)
            v << sql(QStringLiteral("SELECT quote(\"%1\") FROM %2 WHERE CodCultivo = '%3'").arg(nome, tabela, cultivo));
        return v;
    };
    const QVector<QVariant> soja = reco(QStringLiteral("RecoForm"), QStringLiteral("Soja-1-10/11/2005"));
    ASSERT_EQ(soja.size(), 44);
    const auto em = [](const char* letras) { return QString::number(PastaAnterior::coluna(QString::fromLatin1(letras)) + 0.5); };
    EXPECT_EQ(soja[0].toString(), QStringLiteral("'BV-1-15/08/2005'"));
    EXPECT_EQ(soja[4].toString(), QStringLiteral("'2005-11-10'"));
    EXPECT_EQ(soja[5].toString(), em("FH"));
    EXPECT_EQ(soja[6].toString(), QStringLiteral("'---'"));
    EXPECT_EQ(soja[13].toString(), QStringLiteral("'5-20-20'"));
    EXPECT_EQ(soja[14].toString(), QStringLiteral("0")) << "a dash in a figure is 0";
    EXPECT_EQ(soja[19].toString(), QStringLiteral("'---'")) << "an empty source is a dash";
    // Doses and times of the eight parcels alternate in the sheet as in the table, but the other way round.
    EXPECT_EQ(soja[25].toString(), em("GC"));
    EXPECT_EQ(soja[26].toString(), QStringLiteral("'%1'").arg(em("GB")));
    EXPECT_EQ(soja[39].toString(), em("GQ"));
    EXPECT_EQ(soja[40].toString(), QStringLiteral("'%1'").arg(em("GP")));
    EXPECT_EQ(soja[41].toString(), em("GA"));
    EXPECT_EQ(soja[42].toString() + soja[43].toString(), QStringLiteral("'---''---'"));

    // The base dressing goes to the columns of its kind, the others get dashes and zeros.
    const QVector<QVariant> formula = reco(QStringLiteral("RecoFormulac"), QStringLiteral("Milho-4-01/10/2005"));
    const QVector<QVariant> fonte = reco(QStringLiteral("RecoFormulac"), QStringLiteral("Milho-6-01/10/2005"));
    ASSERT_EQ(formula.size(), 62);
    const auto em2 = [](const char* letras) { return QString::number(PastaAnterior::coluna(QString::fromLatin1(letras)) + 0.25); };
    EXPECT_EQ(formula[4].toString(), QStringLiteral("'2005-10-01'"));
    EXPECT_EQ(formula[13].toString() + formula[14].toString(), QStringLiteral("'10-20-20'") + em2("HE"));
    EXPECT_EQ(formula[19].toString() + formula[24].toString(), QStringLiteral("'---'0.0"));
    EXPECT_EQ(fonte[13].toString() + fonte[18].toString(), QStringLiteral("'---'0.0"));
    EXPECT_EQ(fonte[19].toString() + fonte[24].toString(), QStringLiteral("'Ureia'") + em2("HI"));
    EXPECT_EQ(formula[43].toString() + formula[44].toString(), em2("ID") + QStringLiteral("'%1'").arg(em2("IC")));
    EXPECT_EQ(formula[57].toString() + formula[58].toString(), em2("IR") + QStringLiteral("'%1'").arg(em2("IQ")));
    EXPECT_EQ(formula[59].toString(), em2("IB"));
}

TEST_F(MigrationTest, ASecondRunAddsNothingButAsksAndWritesTheCompanyAgain)
{
    transfere(pastaDeExemplo());
    const QString antes = sql(QStringLiteral("SELECT (SELECT COUNT(*) FROM Clientes) || '/' || (SELECT COUNT(*) FROM "
                                             "Analises) || '/' || (SELECT COUNT(*) FROM NPK) || '/' || (SELECT COUNT(*) "
                                             "FROM RecoForm) || '/' || (SELECT COUNT(*) FROM RecoFormulac)"))
                              .toString();
    scratch.exec(QStringLiteral("UPDATE Empresa SET Empresa = 'Outra'"));
    scratch.exec(QStringLiteral("UPDATE NPK SET N = 99 WHERE \"Especificação\" IN ('Fórmula', 'Sulfato de amônio')"));

    resposta = false;
    PastaAnterior p = pastaDeExemplo();
    const RelatorioMigracao r = transfere(p);
    EXPECT_EQ(perguntas, 2);
    EXPECT_EQ(sql(QStringLiteral("SELECT Empresa FROM Empresa")), QStringLiteral("Agro Sul"));
    EXPECT_EQ(sql(QStringLiteral("SELECT (SELECT COUNT(*) FROM Clientes) || '/' || (SELECT COUNT(*) FROM Analises) || "
                                 "'/' || (SELECT COUNT(*) FROM NPK) || '/' || (SELECT COUNT(*) FROM RecoForm) || '/' || "
                                 "(SELECT COUNT(*) FROM RecoFormulac)")),
              antes);
    // No keeps the fertilisers as the user left them, sources included.
    EXPECT_EQ(sql(QStringLiteral("SELECT SUM(N) FROM NPK WHERE \"Especificação\" IN ('Fórmula', 'Sulfato de amônio')")).toInt(), 198);
    EXPECT_EQ(r.contagem(QStringLiteral("NPK")).existentes, 5);

    resposta = true;
    transfere(p);
    EXPECT_EQ(perguntas, 3);
    EXPECT_EQ(sql(QStringLiteral("SELECT SUM(N) FROM NPK WHERE \"Especificação\" IN ('Fórmula', 'Sulfato de amônio')")).toInt(), 25);
}

TEST_F(MigrationTest, ASourceTheDatabaseHasIsOverwrittenWhenNoFormulaAskedFirst)
{
    PastaAnterior p;
    p.poe(2, "DH", QStringLiteral("ureia"));
    p.poe(2, "DI", 46);
    const RelatorioMigracao r = transfere(p);
    EXPECT_EQ(perguntas, 0);
    EXPECT_EQ(r.contagem(QStringLiteral("NPK")).substituidas, sql(QStringLiteral("SELECT COUNT(*) > 0 FROM NPK WHERE "
                                                                                  "upper(\"Especificação\") = 'UREIA'")).toInt());
    EXPECT_FALSE(r.empresa) << "an empty company cell leaves the company alone";
}

TEST_F(MigrationTest, AStopOrAFailureLeavesTheDatabaseAsItWas)
{
    const QString contagem = QStringLiteral("SELECT (SELECT COUNT(*) FROM Clientes) || '/' || (SELECT COUNT(*) FROM "
                                            "Analises) || '/' || (SELECT COUNT(*) FROM NPK) || '/' || (SELECT COUNT(*) "
                                            "FROM Empresa)");
    const QString antes = sql(contagem).toString();
    const RelatorioMigracao parada = transfere(pastaDeExemplo(), [](int valor) { return valor < 100; });
    EXPECT_TRUE(parada.cancelada);
    EXPECT_EQ(sql(contagem).toString(), antes);

    scratch.exec(QStringLiteral("CREATE TRIGGER falha BEFORE INSERT ON RecoFormulac BEGIN SELECT RAISE(ABORT, 'disco cheio'); END"));
    EXPECT_THROW(transfere(pastaDeExemplo()), StoreError);
    EXPECT_EQ(sql(contagem).toString(), antes);
}

TEST_F(MigrationTest, TheAreaIsOfRiceOnlyWhenTheFirstCellFoundIsOfRice)
{
    // The search begins at the second row of the range and ends at its first, and a cell that holds
    // the code among other text counts.
    PastaAnterior p;
    const auto analise = [&p](int linha, const QString& codigo) {
        p.poe(linha, "A", codigo);
        p.poe(linha, "S", 100);
    };
    const auto reco = [&p](int linha, const char* chave, const char* cultura, const QString& codigo) {
        p.poe(linha, QString::fromLatin1(chave), codigo);
        p.poe(linha, PastaAnterior::letras(PastaAnterior::coluna(QString::fromLatin1(chave)) + 2), QString::fromUtf8(cultura));
    };
    analise(2, QStringLiteral("Gleba A1"));
    reco(4, "FC", "Arroz irrigado", QStringLiteral("gleba a1"));
    reco(9, "FC", "Soja", QStringLiteral("xGleba A1x"));
    analise(3, QStringLiteral("Gleba B2"));
    reco(4, "GR", "Arroz pré-germinado", QStringLiteral("Gleba B2"));
    analise(4, QStringLiteral("Gleba C3"));
    reco(10, "FC", "Soja", QStringLiteral("Gleba C3"));
    reco(11, "GR", "Arroz irrigado", QStringLiteral("Gleba C3"));
    analise(5, QStringLiteral("D4"));
    reco(12, "FC", "Soja", QStringLiteral("D4"));
    reco(13, "FC", "Arroz irrigado", QStringLiteral("D4"));
    transfere(p);
    const auto uso = [this](const char* codigo) {
        return sql(QStringLiteral("SELECT ArrozIrrig FROM Analises WHERE \"Código\" = '%1'").arg(QString::fromLatin1(codigo))).toInt();
    };
    EXPECT_EQ(uso("Gleba A1"), 1);
    EXPECT_EQ(uso("Gleba B2"), 2);
    EXPECT_EQ(uso("Gleba C3"), 2);
    EXPECT_EQ(uso("D4"), 1) << "a code too short to be indexed is looked for in every cell";
}

} // namespace
} // namespace lavra
