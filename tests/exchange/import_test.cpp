#include "app/analise.h"
#include "base/validation.h"
#include "exchange/importanalysis.h"
#include "exchange/workbook.h"
#include "exchange/xlsxfile.h"
#include "registers/analysis.h"
#include "store/store.h"
#include "heldfile.h"
#include "store/storeerror.h"
#include "testsupport.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace lavra {
namespace {

using Linha = QVector<QVariant>;

// A row in the layout of the example sheet, so that column k holds box k - 1.
Linha linha(const QString& cliente, const QString& gleba, const QVariant& data, const QVariant& ph = 5.2)
{
    return {cliente, QStringLiteral("Vale Verde"), QStringLiteral("Faz. Vale V."), gleba, 35, data,
            QStringLiteral("3245"), ph, 2.4, 1.3, 0.1, 5.2, 5.5, 2.6, 46, 6.7, 45, 1, 1};
}

Mapeamento naOrdem()
{
    Mapeamento m{};
    for (int k = 0; k < kCaixas; ++k)
        m[static_cast<std::size_t>(k)] = k + 1;
    return m;
}

class ImportTest : public ::testing::Test {
protected:
    test::ScratchDatabase scratch;
    Store db{scratch.path()};
    QTemporaryDir dir;

    RelatorioImportacao importa(const QVector<Linha>& linhas, const Progresso& progresso = {})
    {
        QVector<Linha> folha = {{}};
        for (const QString& c : cabecalhosExemplo())
            folha[0] << c;
        folha += linhas;
        const QString caminho = dir.filePath(QStringLiteral("lab.xlsx"));
        gravaXlsx(caminho, {FolhaEscrita{QStringLiteral("Plan1"), folha}});
        const Pasta pasta = abrePasta(caminho, OpcoesLeitura{kColunasEscolhiveis});
        return ImportaAnalises(db, *pasta.planilhas.front(), naOrdem(), progresso);
    }
    int conta(const QString& tabela) const
    {
        return scratch.scalar(QStringLiteral("SELECT COUNT(*) FROM ") + tabela).toInt();
    }
    QString codigos() const
    {
        return scratch.scalar(QStringLiteral("SELECT group_concat(c, ' | ') FROM (SELECT \"Código\" AS c FROM Analises ORDER BY rowid)")).toString();
    }
};

TEST_F(ImportTest, ARowBecomesAClientAndAnAnalysisWorkedOutAsTheRegisterWorksIt)
{
    const auto r = importa({linha(QStringLiteral("Ana Pereira"), QStringLiteral("Coxilha"), QDate(2011, 6, 22))});
    ASSERT_EQ(r.adicionadas.size(), 1);
    EXPECT_EQ(r.clientesNovos, QStringList{QStringLiteral("Ana Pereira")});
    EXPECT_EQ(scratch.scalar(QStringLiteral("SELECT \"Rua/Localidade\" || Cidade || Telefone || \"E-mail\" FROM "
                                            "Clientes WHERE Nome = 'Ana Pereira'")),
              QStringLiteral("????????????"));

    const QString codigo = QStringLiteral("Faz. Vale V./Coxilha/22/06/2011");
    const QVector<QVariant> a = LeAnalise(db, codigo);
    EXPECT_EQ(a[analise::kData].toDate(), QDate(2011, 6, 22));
    EXPECT_EQ(a[analise::kNumAnalise].toString(), QStringLiteral("3245"));
    // The CTC and the saturation are kept unrounded, in 32-bit floats.
    EXPECT_FLOAT_EQ(a[analise::kCTC].toFloat(), 45.0f / 399.0f + 2.4f + 1.3f + 5.2f);
    EXPECT_FLOAT_EQ(a[analise::kSatBases].toFloat(), 100.0f * (45.0f / 399.0f + 2.4f + 1.3f) / a[analise::kCTC].toFloat());
    EXPECT_EQ(a[analise::kMetodoP].toInt(), 1);
    EXPECT_EQ(a[analise::kArrozIrrig].toInt(), 1);

    // The same figures typed into the register give the same classes.
    MedidasAnalise m{35, 5.2f, 2.4f, 1.3f, 0.1f, 5.2f, 5.5f, 2.6f, 46, 6.7f, 45};
    m.ctc = a[analise::kCTC].toFloat();
    m.bases = a[analise::kSatBases].toFloat();
    const QVector<QVariant> esperada = LinhaAnalise({}, m);
    for (int ordinal = analise::kClassePH; ordinal < analise::kColunas; ++ordinal)
        EXPECT_EQ(a[ordinal].toInt(), esperada[ordinal].toInt()) << ordinal;
}

TEST_F(ImportTest, ClientsAndKeysAreMatchedIgnoringCaseAndASecondRunAddsNothing)
{
    scratch.exec(QStringLiteral("INSERT INTO Clientes VALUES ('João da Silva', 'a', 'b', 'c', 'd')"));
    const QVector<Linha> linhas = {linha(QStringLiteral("JOÃO DA SILVA"), QStringLiteral("Coxilha"), QDate(2011, 6, 22)),
                                   linha(QStringLiteral("joão da silva"), QStringLiteral("COXILHA"), QDate(2011, 6, 22))};
    const auto primeira = importa(linhas);
    EXPECT_TRUE(primeira.clientesNovos.isEmpty());
    EXPECT_EQ(primeira.adicionadas.size(), 1);
    ASSERT_EQ(primeira.existentes.size(), 1);
    EXPECT_EQ(primeira.existentes[0].linha, 3);
    EXPECT_EQ(primeira.existentes[0].motivo, QStringLiteral("Repete a análise da linha 2."));

    const auto segunda = importa(linhas);
    EXPECT_TRUE(segunda.adicionadas.isEmpty());
    EXPECT_EQ(segunda.existentes.size(), 2);
    EXPECT_EQ(conta(QStringLiteral("Clientes")), 1);
    EXPECT_EQ(conta(QStringLiteral("Analises")), 1);
}

TEST_F(ImportTest, TheKeyTakesTheDateCellAsItStandsAndTheDateIsReadFromIt)
{
    importa({linha(QStringLiteral("Ana"), QStringLiteral("A"), QStringLiteral("22/6/2011")),
             linha(QStringLiteral("Ana"), QStringLiteral("A"), QStringLiteral("22/06/2011")),
             linha(QStringLiteral("Ana"), QStringLiteral("B"), QStringLiteral("220611")),
             linha(QStringLiteral("Ana"), QStringLiteral("C"), 220611)});
    EXPECT_EQ(codigos(), QStringLiteral("Faz. Vale V./A/22/6/2011 | Faz. Vale V./A/22/06/2011 | "
                                        "Faz. Vale V./B/220611 | Faz. Vale V./C/220611"));
    EXPECT_EQ(scratch.scalar(QStringLiteral("SELECT COUNT(DISTINCT Data_) FROM Analises")).toInt(), 1);
    EXPECT_EQ(LeAnalise(db, QStringLiteral("Faz. Vale V./C/220611"))[analise::kData].toDate(), QDate(2011, 6, 22));
}

TEST_F(ImportTest, RowsThatCannotBeTakenAreRefusedWithTheirReasonAndTheRestComesIn)
{
    test::MachineLocale maquina(test::commaLocale());
    Linha vazia = linha(QStringLiteral("Nova Cliente"), QStringLiteral("A"), QDate(2011, 6, 22));
    vazia[16] = QVariant();
    Linha letras = linha(QStringLiteral("Ana"), QStringLiteral("B"), QDate(2011, 6, 22), QStringLiteral("abc"));
    Linha ponto = linha(QStringLiteral("Ana"), QStringLiteral("C"), QDate(2011, 6, 22), QStringLiteral("5.2"));
    Linha virgula = linha(QStringLiteral("Ana"), QStringLiteral("D"), QDate(2011, 6, 22), QStringLiteral("5,2"));
    Linha foraDaFaixa = linha(QStringLiteral("Ana"), QStringLiteral("E"), QDate(2011, 6, 22), 15);
    Linha metodo = linha(QStringLiteral("Ana"), QStringLiteral("F"), QDate(2011, 6, 22));
    metodo[18] = 3;
    const auto r = importa({vazia, letras, ponto, virgula, Linha(19), foraDaFaixa, metodo});

    ASSERT_EQ(r.adicionadas.size(), 1);
    EXPECT_EQ(r.adicionadas[0].linha, 5);
    EXPECT_FLOAT_EQ(LeAnalise(db, QStringLiteral("Faz. Vale V./D/22/06/2011"))[analise::kPH].toFloat(), 5.2f);
    // The blank row 6 is no refusal; the client of a refused row is not created.
    QStringList recusas;
    for (const auto& l : r.recusadas)
        recusas << QStringLiteral("%1 %2").arg(l.linha).arg(l.motivo);
    EXPECT_EQ(recusas, (QStringList{QStringLiteral("2 Célula vazia: K (mg/dm³)."),
                                    QStringLiteral("3 pH (água): 'abc' não é um número (o símbolo decimal deste "
                                                   "computador é ',')."),
                                    QStringLiteral("4 pH (água): '5.2' não é um número (o símbolo decimal deste "
                                                   "computador é ',')."),
                                    QStringLiteral("7 pH (água): ") + mensagemFaixa(Grandeza::PH),
                                    QStringLiteral("8 Método de extração de P: '3' deveria ser 1 ou 2.")}));
    EXPECT_EQ(r.clientesNovos, QStringList{QStringLiteral("Ana")});

    const QString relatorio = r.texto(QStringLiteral("lab.xlsx"), QStringLiteral("Plan1"));
    EXPECT_TRUE(relatorio.contains(QStringLiteral("Linhas recusadas: 5")));
    EXPECT_TRUE(relatorio.contains(QStringLiteral("Linha 3: Faz. Vale V./B/22/06/2011 (Ana) - pH (água): 'abc'")));
}

TEST_F(ImportTest, AHeadingAloneTransfersNothing)
{
    const auto r = importa({});
    EXPECT_TRUE(r.adicionadas.isEmpty() && r.existentes.isEmpty() && r.recusadas.isEmpty() && !r.cancelada);
    EXPECT_EQ(conta(QStringLiteral("Analises")), 0);
}

TEST_F(ImportTest, ACancelLeavesTheDatabaseAsItWas)
{
    QStringList etapas;
    Progresso progresso;
    progresso.etapa = [&etapas](const QString& etapa, int linhas) { etapas << QStringLiteral("%1 %2").arg(etapa).arg(linhas); };
    // The second pass is cancelled at its second row: the clients of the first pass are undone too.
    int chamadas = 0;
    progresso.linha = [&chamadas](int) { return ++chamadas < 5; };
    const auto r = importa({linha(QStringLiteral("Ana"), QStringLiteral("A"), QDate(2011, 6, 22)),
                            linha(QStringLiteral("Bia"), QStringLiteral("B"), QDate(2011, 6, 22)),
                            linha(QStringLiteral("Caio"), QStringLiteral("C"), QDate(2011, 6, 22))},
                           progresso);
    EXPECT_TRUE(r.cancelada);
    EXPECT_TRUE(r.adicionadas.isEmpty());
    EXPECT_EQ(etapas, (QStringList{kEtapaClientes + QStringLiteral(" 4"), kEtapaAnalises + QStringLiteral(" 4")}));
    EXPECT_EQ(conta(QStringLiteral("Clientes")), 0);
    EXPECT_EQ(conta(QStringLiteral("Analises")), 0);
}

TEST_F(ImportTest, ADatabaseAnotherProgramIsWritingStopsTheImportWithNothingWritten)
{
    scratch.exec(QStringLiteral("INSERT INTO Clientes VALUES ('Ana', 'a', 'b', 'c', 'd')"));
    test::HeldFile outro(scratch.path(), "BEGIN IMMEDIATE");
    ASSERT_TRUE(outro.held());
    EXPECT_THROW(importa({linha(QStringLiteral("Ana"), QStringLiteral("A"), QDate(2011, 6, 22)),
                          linha(QStringLiteral("Bia"), QStringLiteral("B"), QDate(2011, 6, 22))}),
                 StoreError);
    outro.release();
    EXPECT_EQ(conta(QStringLiteral("Clientes")), 1);
    EXPECT_EQ(conta(QStringLiteral("Analises")), 0);
}

class ControlaDadaTest : public ::testing::TestWithParam<QLocale> {};

TEST_P(ControlaDadaTest, ReadsTheFormsPeopleType)
{
    test::MachineLocale maquina(GetParam());
    const bool mesPrimeiro = GetParam() == test::pointLocale();
    const QDate zero(1899, 12, 30);
    const QDate nenhuma(1900, 1, 1);
    const std::pair<const char*, QDate> casos[] = {
        // A date the machine reads is taken as such; the forms without separators whatever the setting.
        {"22/06/2011", mesPrimeiro ? nenhuma : QDate(2011, 6, 22)},
        {"6/22/2011", mesPrimeiro ? QDate(2011, 6, 22) : nenhuma},
        {"2011-06-22", QDate(2011, 6, 22)},
        {"22062011", QDate(2011, 6, 22)},  // ddmmaaaa
        {"220611", QDate(2011, 6, 22)},    // ddmmaa
        {"220695", QDate(1995, 6, 22)},
        {"261985", QDate(1985, 6, 2)},  // dmaaaa: month 19 is no month
        {"262015", nenhuma},            // nor is 2015 a year of that form
        {"2611", QDate(2011, 6, 2)},    // dmaa
        {"31022011", zero},             // a form, but no date
        {"0102", zero},
        {"22-6", zero},
        {"", nenhuma},
        {"2206201", nenhuma},
    };
    for (const auto& [texto, data] : casos)
        EXPECT_EQ(ControlaDada(QString::fromLatin1(texto)), data) << texto;
}

INSTANTIATE_TEST_SUITE_P(Locales, ControlaDadaTest, ::testing::Values(test::commaLocale(), test::pointLocale()));

} // namespace
} // namespace lavra
