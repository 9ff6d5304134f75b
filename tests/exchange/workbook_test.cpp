#include "exchange/workbook.h"
#include "exchange/xlsxfile.h"
#include "odsfile.h"
#include "testsupport.h"
#include "xlsfile.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace lavra {
namespace {

using Linhas = QVector<QVector<QVariant>>;
using Tipo = Celula::Tipo;

struct Folha {
    QString nome;
    Linhas linhas;
};

// Writes the same sheets in one of the three formats, with each format's own writer.
QString grava(const QTemporaryDir& dir, const QString& formato, const QList<Folha>& folhas)
{
    const QString caminho = dir.filePath(QStringLiteral("pasta.") + formato);
    if (formato == QLatin1String("xlsx")) {
        QList<FolhaEscrita> f;
        for (const Folha& x : folhas)
            f << FolhaEscrita{x.nome, x.linhas};
        gravaXlsx(caminho, f);
    } else if (formato == QLatin1String("ods")) {
        QList<test::PlanilhaOds> f;
        for (const Folha& x : folhas)
            f << test::PlanilhaOds{x.nome, x.linhas};
        EXPECT_TRUE(test::gravaOds(caminho, f));
    } else {
        QList<test::PlanilhaXls> f;
        for (const Folha& x : folhas)
            f << test::PlanilhaXls{x.nome, x.linhas};
        EXPECT_TRUE(test::gravaXls(caminho, f));
    }
    return caminho;
}

class ReaderTest : public ::testing::TestWithParam<const char*> {
protected:
    QTemporaryDir dir;
    QString formato = QString::fromLatin1(GetParam());
};

TEST_P(ReaderTest, ReadsTextsNumbersDatesAndGapsOfEverySheet)
{
    const Linhas dados = {
        {QStringLiteral("Cliente"), QStringLiteral("Área"), QStringLiteral("Data (dd/mm/aaaa)"), QStringLiteral("K (mg/dm³)"),
         QStringLiteral("Nº_Análise")},
        {QStringLiteral("João Araújo"), 35, QDate(2011, 6, 22), 5.2, QStringLiteral("3245")},
        {QStringLiteral("Ana"), QVariant(), QStringLiteral("220611"), 0.1},
        {},
        {QStringLiteral("última")},
    };
    const QString caminho = grava(dir, formato, {{QStringLiteral("Análises"), dados},
                                                 {QStringLiteral("Outra"), {{QVariant(), QStringLiteral("b2")}}}});
    const Pasta pasta = abrePasta(caminho);
    ASSERT_EQ(pasta.nomes(), (QStringList{QStringLiteral("Análises"), QStringLiteral("Outra")}));

    const Planilha& p = *pasta.planilha(QStringLiteral("Análises"));
    EXPECT_EQ(p.linhasUsadas(), 5);
    EXPECT_EQ(p.celula(1, 4).texto, QStringLiteral("K (mg/dm³)"));
    EXPECT_EQ(p.celula(2, 1).texto, QStringLiteral("João Araújo"));
    EXPECT_EQ(p.celula(2, 2).tipo, Tipo::Numero);
    EXPECT_EQ(p.celula(2, 2).numero, 35);
    EXPECT_EQ(p.celula(2, 3).tipo, Tipo::Data);
    EXPECT_EQ(p.celula(2, 3).data(), QDate(2011, 6, 22));
    EXPECT_EQ(p.celula(2, 4).numero, 5.2);
    EXPECT_EQ(p.celula(2, 5).tipo, Tipo::Texto);  // a number typed as text stays text
    EXPECT_TRUE(p.celula(3, 2).vazia());
    EXPECT_EQ(p.celula(3, 3).texto, QStringLiteral("220611"));
    EXPECT_TRUE(p.celula(4, 1).vazia());
    EXPECT_EQ(p.celula(5, 1).texto, QStringLiteral("última"));
    EXPECT_TRUE(p.celula(99, 99).vazia());

    const Planilha& outra = *pasta.planilha(QStringLiteral("Outra"));
    EXPECT_EQ(outra.linhasUsadas(), 1);
    EXPECT_EQ(outra.celula(1, 2).texto, QStringLiteral("b2"));
}

TEST_P(ReaderTest, CellsAsTextFollowTheMachineSetting)
{
    const QString caminho =
        grava(dir, formato, {{QStringLiteral("P"), {{5.2, 3245, QDate(2011, 6, 2), QStringLiteral(" x ")}}}});
    const Pasta pasta = abrePasta(caminho);
    const Planilha& p = *pasta.planilhas.front();
    for (const auto& [locale, decimal] : {std::pair{test::commaLocale(), "5,2"}, std::pair{test::pointLocale(), "5.2"}}) {
        test::MachineLocale maquina(locale);
        EXPECT_EQ(p.celula(1, 1).comoTexto(), QString::fromLatin1(decimal));
        EXPECT_EQ(p.celula(1, 2).comoTexto(), QStringLiteral("3245"));
        EXPECT_EQ(p.celula(1, 3).comoTexto(), QStringLiteral("02/06/2011"));
        EXPECT_EQ(p.celula(1, 4).comoTexto(), QStringLiteral(" x "));
    }
}

TEST_P(ReaderTest, ColumnsPastTheLimitAreNotKept)
{
    QVector<QVariant> larga;
    for (int c = 1; c <= 45; ++c)
        larga << QStringLiteral("c%1").arg(c);
    const QString caminho = grava(dir, formato, {{QStringLiteral("P"), {larga}}});
    const Pasta pasta = abrePasta(caminho, OpcoesLeitura{40});
    EXPECT_EQ(pasta.planilhas.front()->celula(1, 40).texto, QStringLiteral("c40"));
    EXPECT_TRUE(pasta.planilhas.front()->celula(1, 41).vazia());
}

TEST_P(ReaderTest, ASheetLongerThanOneReadingBlockReadsToItsLastRow)
{
    Linhas longa;
    for (int l = 1; l <= 5000; ++l)
        longa << QVector<QVariant>{QStringLiteral("Gleba %1").arg(l), l};
    const Pasta pasta = abrePasta(grava(dir, formato, {{QStringLiteral("P"), longa}}));
    const Planilha& p = *pasta.planilhas.front();
    ASSERT_EQ(p.linhasUsadas(), 5000);
    EXPECT_EQ(p.celula(5000, 1).texto, QStringLiteral("Gleba 5000"));
    EXPECT_EQ(p.celula(5000, 2).numero, 5000);
}

TEST_P(ReaderTest, AWorkbookPastTheCellLimitIsRefused)
{
    Linhas muitas(30, QVector<QVariant>(10, 1.0));
    const QString caminho = grava(dir, formato, {{QStringLiteral("P"), muitas}});
    OpcoesLeitura opcoes;
    opcoes.maxCelulas = 100;
    try {
        abrePasta(caminho, opcoes);
        FAIL() << "read past the limit";
    } catch (const ErroPasta& erro) {
        EXPECT_EQ(erro.mensagem(), erroPastaGrande(caminho));
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, ReaderTest, ::testing::Values("xlsx", "ods", "xls"));

QVariant formula(const QVariant& resultado)
{
    return QVariant::fromValue(test::FormulaXls{resultado});
}

// freexl gives a formula's cell as empty: the result Excel saved with it is read beside freexl.
TEST(XlsFormulaTest, SavedResultsAreReadAmongTheOrdinaryCellsOfTheirOwnSheet)
{
    QTemporaryDir dir;
    const Linhas custos = {{QStringLiteral("Insumo"), QStringLiteral("Dose")},
                           {QStringLiteral("Ureia"), formula(2.5), 120},
                           {formula(QStringLiteral("Para exemplo")), 3, formula(true), formula(false)}};
    const Linhas resumo = {{}, {QStringLiteral("Total"), formula(-4)}};
    const Pasta pasta = abrePasta(
        grava(dir, QStringLiteral("xls"), {{QStringLiteral("Custos"), custos}, {QStringLiteral("Resumo"), resumo}}));

    const Planilha& p = *pasta.planilha(QStringLiteral("Custos"));
    EXPECT_EQ(p.celula(1, 2).texto, QStringLiteral("Dose"));
    EXPECT_EQ(p.celula(2, 2).tipo, Tipo::Numero);
    EXPECT_EQ(p.celula(2, 2).numero, 2.5);
    EXPECT_EQ(p.celula(2, 3).numero, 120);
    EXPECT_EQ(p.celula(3, 1).tipo, Tipo::Texto);
    EXPECT_EQ(p.celula(3, 1).texto, QStringLiteral("Para exemplo"));
    // Booleans as 0 and 1, as freexl gives an ordinary boolean cell.
    EXPECT_EQ(p.celula(3, 3).numero, 1);
    EXPECT_FALSE(p.celula(3, 4).vazia());
    EXPECT_EQ(p.celula(3, 4).numero, 0);

    const Planilha& r = *pasta.planilha(QStringLiteral("Resumo"));
    EXPECT_EQ(r.linhasUsadas(), 2);
    EXPECT_EQ(r.celula(2, 2).numero, -4);
}

TEST(XlsFormulaTest, SavedResultsKeepTheLimitsOfOrdinaryCells)
{
    QTemporaryDir dir;
    QVector<QVariant> larga;
    for (int c = 1; c <= 45; ++c)
        larga << formula(c);
    const Pasta pasta =
        abrePasta(grava(dir, QStringLiteral("xls"), {{QStringLiteral("P"), {larga}}}), OpcoesLeitura{40});
    EXPECT_EQ(pasta.planilhas.front()->celula(1, 40).numero, 40);
    EXPECT_TRUE(pasta.planilhas.front()->celula(1, 41).vazia());

    const QString muitas =
        grava(dir, QStringLiteral("xls"), {{QStringLiteral("P"), Linhas(30, QVector<QVariant>(10, formula(1)))}});
    OpcoesLeitura opcoes;
    opcoes.maxCelulas = 100;
    try {
        abrePasta(muitas, opcoes);
        FAIL() << "read past the limit";
    } catch (const ErroPasta& erro) {
        EXPECT_EQ(erro.mensagem(), erroPastaGrande(muitas));
    }
}

// Whatever is wrong with a file, the user is told in words, and no reader goes further.
TEST(WorkbookFileTest, DamagedEmptyProtectedAndMissingFilesAreToldApart)
{
    QTemporaryDir dir;
    const auto escreve = [&dir](const QString& nome, const QByteArray& bytes) {
        QFile f(dir.filePath(nome));
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(bytes);
        return f.fileName();
    };
    const auto mensagem = [](const QString& caminho) {
        try {
            abrePasta(caminho);
        } catch (const ErroPasta& erro) {
            return erro.mensagem();
        }
        return QStringLiteral("lida");
    };

    const QString boa = dir.filePath(QStringLiteral("boa.xlsx"));
    gravaXlsx(boa, {FolhaEscrita{QStringLiteral("P"), {{QStringLiteral("a"), 1}}}});
    QFile f(boa);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QByteArray xlsx = f.readAll();

    const QString cortada = escreve(QStringLiteral("cortada.xlsx"), xlsx.left(xlsx.size() / 2));
    EXPECT_EQ(mensagem(cortada), erroPastaIlegivel(cortada));
    const QString texto = escreve(QStringLiteral("texto.xls"), "Cliente;Local\nAna;Vale\n");
    EXPECT_EQ(mensagem(texto), erroPastaIlegivel(texto));
    const QString vazia = escreve(QStringLiteral("vazia.ods"), {});
    EXPECT_TRUE(mensagem(vazia).contains(QStringLiteral("está vazio")));
    // A compound file that is not a workbook, and one that holds an encrypted Office document.
    QByteArray composto("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8);
    composto.append(504, '\0');
    const QString ole = escreve(QStringLiteral("ole.xls"), composto);
    EXPECT_EQ(mensagem(ole), erroPastaIlegivel(ole));
    QByteArray cifrado = composto;
    for (const char c : QByteArrayLiteral("EncryptionInfo"))
        cifrado.append(c).append('\0');
    const QString senha = escreve(QStringLiteral("senha.xlsx"), cifrado);
    EXPECT_EQ(mensagem(senha), erroPastaSenha(senha));
    EXPECT_TRUE(mensagem(dir.filePath(QStringLiteral("nada.xlsx"))).contains(QStringLiteral("não foi encontrado")));
}

// The files the fuzzer found faults with, kept beside it: each must now be read or refused in words.
TEST(WorkbookFileTest, EveryFileTheFuzzerFoundIsReadOrRefusedInWords)
{
    QDirIterator arquivos(QStringLiteral(LAVRA_REGRESSOES), {QStringLiteral("*.xls*"), QStringLiteral("*.ods")},
                          QDir::Files, QDirIterator::Subdirectories);
    int vistos = 0;
    while (arquivos.hasNext()) {
        const QString caminho = arquivos.next();
        ++vistos;
        try {
            abrePasta(caminho);
        } catch (const ErroPasta& erro) {
            EXPECT_FALSE(erro.mensagem().isEmpty()) << caminho.toStdString();
        }
    }
    EXPECT_GE(vistos, 9);
}

TEST(WorkbookWriteTest, AFailedWriteLeavesAnEarlierFileInPlace)
{
    QTemporaryDir dir;
    const QString caminho = dir.filePath(QStringLiteral("nao/existe/pasta.xlsx"));
    EXPECT_THROW(gravaXlsx(caminho, {FolhaEscrita{QStringLiteral("P"), {{1}}}}), ErroPasta);

    const QString existente = dir.filePath(QStringLiteral("existente.xlsx"));
    gravaXlsx(existente, {FolhaEscrita{QStringLiteral("P"), {{1}}}});
    // A sheet name no workbook takes fails the write after the file was there.
    EXPECT_THROW(gravaXlsx(existente, {FolhaEscrita{QStringLiteral("a[b]"), {{2}}}}), ErroPasta);
    EXPECT_TRUE(QFile::exists(existente));
}

TEST(WorkbookWriteTest, ALargeWorkbookWrittenWholeKeepsItsTextsWhereTheReadersFindThem)
{
    // Past the streaming writer's limit: texts written inline would read back empty.
    QTemporaryDir dir;
    QVector<QVector<QVariant>> linhas;
    const int n = static_cast<int>(EscritorXlsx::kCelulasEmMemoria / 20) + 1;
    for (int l = 1; l <= n; ++l)
        linhas << QVector<QVariant>(20, QStringLiteral("Gleba %1").arg(l));
    const QString caminho = dir.filePath(QStringLiteral("grande.xlsx"));
    gravaXlsx(caminho, {FolhaEscrita{QStringLiteral("P"), linhas}});
    const Pasta pasta = abrePasta(caminho);
    EXPECT_EQ(pasta.planilhas.front()->celula(n, 20).texto, QStringLiteral("Gleba %1").arg(n));
}

} // namespace
} // namespace lavra
