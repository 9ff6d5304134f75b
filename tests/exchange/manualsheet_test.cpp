#include "exchange/manualsheet.h"
#include "exchange/workbook.h"
#include "exchange/xlsxfile.h"
#include "testsupport.h"

#include <gtest/gtest.h>

namespace lavra {

namespace {

using namespace manual;
using test::MachineLocale;

class ManualSheetTest : public ::testing::Test {
protected:
    QString arquivo(const QString& nome) const { return scratch.dir() + QLatin1Char('/') + nome; }

    test::ScratchDatabase scratch;
    Store db{scratch.path()};
};

TEST_F(ManualSheetTest, AnExportedTableReadsBackUnchangedUnderEitherDecimalSymbol)
{
    for (const QLocale& local : {test::commaLocale(), test::pointLocale()}) {
        MachineLocale maquina(local);
        for (const QString& tabela : {QStringLiteral("Calagem"), QStringLiteral("SMP"), QStringLiteral("FLOREST"), QStringLiteral("Graf")}) {
            SCOPED_TRACE(tabela.toStdString());
            const QString caminho = arquivo(tabela + QStringLiteral(".xlsx"));
            exportaTabela(db, tabela, caminho);
            const Importacao imp = leImportacao(db, tabela, caminho);
            EXPECT_TRUE(imp.correcoes.isEmpty()) << imp.texto().toStdString();
            EXPECT_TRUE(imp.recusas.isEmpty()) << imp.texto().toStdString();
            EXPECT_EQ(imp.linhasLidas, leTabela(db, tabela).size());
        }
    }
    // The sheet carries each row's source and confidence after the columns, and says what the
    // columns mean.
    const Pasta pasta = abrePasta(arquivo(QStringLiteral("SMP.xlsx")));
    ASSERT_EQ(pasta.nomes(), (QStringList{QStringLiteral("SMP"), QStringLiteral("Colunas")}));
    const Planilha* smp = pasta.planilha(QStringLiteral("SMP"));
    EXPECT_EQ(smp->celula(1, 5).texto, QStringLiteral("Fonte"));
    EXPECT_EQ(smp->celula(2, 6).texto, QStringLiteral("alta"));
    EXPECT_DOUBLE_EQ(smp->celula(2, 1).numero, 4.4);
    EXPECT_EQ(pasta.planilha(QStringLiteral("Colunas"))->celula(3, 2).texto, QStringLiteral("Calcário para pH 5,5 (t/ha, PRNT 100 %)"));
}

TEST_F(ManualSheetTest, ACorrectedWorkbookIsToldRowByRowBeforeItIsApplied)
{
    MachineLocale virgula(test::commaLocale());
    const QString tabela = QStringLiteral("GRAOPC1");
    const QString caminho = arquivo(QStringLiteral("corrigida.xlsx"));
    const QStringList colunas{"Chave", "RendRef", "Adicional", "Classe1", "Classe2", "Classe3", "Classe4", "Classe5"};
    // A row of the table as it stands, the key first.
    const auto linha = [&](const QString& chave) {
        QVector<QVariant> valores{chave};
        for (int c = 1; c < colunas.size(); ++c)
            valores << scratch.cell(tabela, colunas[c], chave);
        return valores;
    };
    QVector<QVariant> cabecalho;
    for (const QString& c : colunas)
        cabecalho << c;
    cabecalho << "Fonte" << "Confiança" << "Observação";
    // Soybean: Classe2 70 → 72,5, typed as a number; the note columns are not read.
    QVector<QVariant> soja = linha(QStringLiteral("Soja"));
    soja[4] = 72.5;
    soja << "outra fonte" << "baixa" << "x";
    // Bean, every figure as it stands, one of them as a text with a comma.
    QVector<QVariant> feijao = linha(QStringLiteral("Feijão"));
    feijao[4] = feijao[4].toString().replace(QLatin1Char('.'), QLatin1Char(','));
    QVector<QVariant> milho = linha(QStringLiteral("Milho"));
    milho[3] = QStringLiteral("muito");
    QVector<QVariant> outraSoja = linha(QStringLiteral("Soja"));
    outraSoja[4] = 10;
    gravaXlsx(caminho,
        {FolhaEscrita{tabela, {cabecalho, soja, feijao, {"Cultura nova", 1, 1, 1, 1, 1, 1, 1}, milho, {}, outraSoja}}});

    const Importacao imp = leImportacao(db, tabela, caminho);
    EXPECT_EQ(imp.linhasLidas, 5);
    ASSERT_EQ(imp.correcoes.size(), 1) << imp.texto().toStdString();
    EXPECT_EQ(textoCorrecao(imp.correcoes[0]), QStringLiteral("GRAOPC1, \"Soja\", Classe2: 70 → 72,5"));
    ASSERT_EQ(imp.recusas.size(), 4) << imp.texto().toStdString();
    EXPECT_TRUE(imp.recusas[0].startsWith(QStringLiteral("Coluna \"Observação\"")));
    EXPECT_TRUE(imp.recusas[1].startsWith(QStringLiteral("Linha 4: a tabela GRAOPC1 não tem a chave \"Cultura nova\"")));
    EXPECT_TRUE(imp.recusas[2].startsWith(QStringLiteral("Linha 5, \"Milho\": Classe1:")));
    EXPECT_TRUE(imp.recusas[3].startsWith(QStringLiteral("Linha 7: a chave \"Soja\" já veio na linha 2")));
    const double classe2DoMilho = scratch.cell(tabela, "Classe2", "Milho");

    corrige(db, imp.correcoes, QStringLiteral("Importação de corrigida.xlsx"));
    EXPECT_DOUBLE_EQ(scratch.cell(tabela, "Classe2", "Soja"), 72.5);
    EXPECT_DOUBLE_EQ(scratch.cell(tabela, "Classe2", "Milho"), classe2DoMilho) << "a refused row is not applied in part";
    EXPECT_EQ(historico(db).size(), 1);

    // A workbook without the table's sheet, or without its key column, is refused as a whole.
    EXPECT_THROW(leImportacao(db, QStringLiteral("GRAOKC1"), caminho), ErroPasta);
    gravaXlsx(caminho, {FolhaEscrita{tabela, {{"RendRef", "Classe2"}, {2, 80}}}});
    EXPECT_THROW(leImportacao(db, tabela, caminho), ErroPasta);
}

TEST_F(ManualSheetTest, TheHistoryGoesToAWorkbook)
{
    MachineLocale virgula(test::commaLocale());
    corrige(db, {Correcao{QStringLiteral("SMP"), QStringLiteral("4.4"), 2, 21.0, 21.5}}, QStringLiteral("Tabela do livro"));
    const QString caminho = arquivo(QStringLiteral("historico.xlsx"));
    exportaHistorico(db, caminho);
    const Planilha* folha = abrePasta(caminho).planilha(QStringLiteral("Histórico"));
    ASSERT_TRUE(folha);
    EXPECT_EQ(folha->linhasUsadas(), 2);
    EXPECT_EQ(folha->celula(2, 2).texto, QStringLiteral("SMP"));
    EXPECT_EQ(folha->celula(2, 3).texto, QStringLiteral("4,4"));
    EXPECT_EQ(folha->celula(2, 5).texto, QStringLiteral("21"));
    EXPECT_EQ(folha->celula(2, 6).texto, QStringLiteral("21,5"));
    EXPECT_EQ(folha->celula(2, 7).texto, QStringLiteral("Tabela do livro"));
}

} // namespace

} // namespace lavra
