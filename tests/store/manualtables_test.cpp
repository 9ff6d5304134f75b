#include "app/session.h"
#include "app/startup.h"
#include "calc/grains.h"
#include "store/manualtables.h"
#include "store/storeerror.h"
#include "testsupport.h"

#include <gtest/gtest.h>

namespace lavra {

namespace {

using namespace manual;
using test::MachineLocale;

const QString kGraoP = QStringLiteral("GRAOPC1");
const QString kSoja = QStringLiteral("Soja");
constexpr int kClasse2 = 4; // Chave, RendRef, Adicional, Classe1, Classe2

class ManualTablesTest : public ::testing::Test {
protected:
    int historicos() const { return scratch.scalar(QStringLiteral("SELECT COUNT(*) FROM HistoricoTabelas")).toInt(); }
    int marcas() const { return scratch.scalar(QStringLiteral("SELECT COUNT(*) FROM LinhasConferidas")).toInt(); }
    double sojaP() const { return scratch.cell(kGraoP, QStringLiteral("Classe2"), kSoja); }
    const LinhaManual linha(const QString& tabela, const QString& chave) const
    {
        for (const LinhaManual& l : leTabela(db, tabela)) {
            if (l.chave == chave)
                return l;
        }
        ADD_FAILURE() << "no row " << chave.toStdString();
        return {};
    }
    void corrigeSoja(double novo, const QString& motivo = QStringLiteral("Conferido no livro, p. 102"))
    {
        corrige(db, {Correcao{kGraoP, kSoja, kClasse2, sojaP(), novo}}, motivo);
    }

    MachineLocale virgula{test::commaLocale()};
    test::ScratchDatabase scratch;
    Store db{scratch.path()};
};

TEST_F(ManualTablesTest, EveryRowOfTheManualComesWithItsNoteAndEveryColumnWithWords)
{
    int linhas = 0;
    int baixas = 0;
    for (const QString& tabela : tabelas()) {
        SCOPED_TRACE(tabela.toStdString());
        EXPECT_NE(descricaoTabela(tabela), tabela);
        const TableDef* def = schema::findTable(tabela);
        ASSERT_TRUE(def);
        for (const ColumnDef& coluna : def->columns)
            EXPECT_NE(tituloColuna(tabela, coluna.name), coluna.name) << coluna.name.toStdString();
        for (const LinhaManual& l : leTabela(db, tabela)) {
            ++linhas;
            baixas += l.confianca == Confianca::Baixa;
            EXPECT_FALSE(l.fonte.isEmpty()) << l.chave.toStdString();
            EXPECT_NE(l.confianca, Confianca::SemNota) << l.chave.toStdString();
        }
    }
    EXPECT_EQ(linhas, 600);
    EXPECT_GT(baixas, 300);
    // Every group of the liming table has its own "Selecione"; the group tells them apart.
    EXPECT_TRUE(dadosDoPrograma().linha(QStringLiteral("Calagem"), QStringLiteral("Selecione (grupo 3)")));
    EXPECT_EQ(tituloColuna(QStringLiteral("GRAOKC2"), QStringLiteral("Classe5")), QStringLiteral("Classe 5, muito alto (kg/ha de K₂O)"));
    EXPECT_EQ(tituloColuna(QStringLiteral("FLOREST"), QStringLiteral("NReposicaoMO4")),
        QStringLiteral("N na reposição, MO acima de 5,0 % (kg/ha de N)"));
    EXPECT_EQ(descricaoTabela(QStringLiteral("FORRAGPC2")), QStringLiteral("Forrageiras — fósforo, 2º cultivo"));
}

TEST_F(ManualTablesTest, ValuesAreReadWithTheMachinesDecimalSymbolOnly)
{
    const auto le = [](const QString& tabela, int coluna, const QString& texto) { return leValor(tabela, coluna, texto); };
    {
        MachineLocale ponto{test::pointLocale()};
        EXPECT_EQ(le(kGraoP, kClasse2, QStringLiteral("1.5")).valor.toDouble(), 1.5);
        EXPECT_FALSE(le(kGraoP, kClasse2, QStringLiteral("1,5")).recusa.isEmpty());
    }
    MachineLocale virgulaDeNovo{test::commaLocale()}; // the one above put the machine's own back
    EXPECT_EQ(le(kGraoP, kClasse2, QStringLiteral(" 1,5 ")).valor.toDouble(), 1.5);
    EXPECT_FALSE(le(kGraoP, kClasse2, QStringLiteral("1.5")).recusa.isEmpty());
    EXPECT_FALSE(le(kGraoP, kClasse2, QString()).recusa.isEmpty());
    EXPECT_FALSE(le(kGraoP, kClasse2, QStringLiteral("-5")).recusa.isEmpty());
    EXPECT_FALSE(le(kGraoP, 0, QStringLiteral("Soja2")).recusa.isEmpty()) << "the key is not edited";

    const QString calagem = QStringLiteral("Calagem");
    EXPECT_EQ(le(calagem, 4, QStringLiteral("-0,6")).valor.toDouble(), -0.6) << "a coefficient may be negative";
    EXPECT_FALSE(le(calagem, 3, QStringLiteral("0")).recusa.isEmpty()) << "divisor";
    EXPECT_FALSE(le(calagem, 2, QStringLiteral("4")).recusa.isEmpty()) << "no such method";
    EXPECT_EQ(le(calagem, 2, QStringLiteral("444")).valor.toLongLong(), 444);
    EXPECT_FALSE(le(calagem, 2, QStringLiteral("1,5")).recusa.isEmpty());
    EXPECT_EQ(le(calagem, 10, QStringLiteral("s")).valor.toString(), QStringLiteral("S"));
    EXPECT_FALSE(le(calagem, 10, QStringLiteral("sim")).recusa.isEmpty());
}

TEST_F(ManualTablesTest, ACorrectionIsWrittenWithItsHistoryAndMarksTheRow)
{
    ASSERT_EQ(sojaP(), 70);
    corrigeSoja(80);
    EXPECT_EQ(sojaP(), 80);
    EXPECT_EQ(linha(kGraoP, kSoja).confianca, Confianca::ConferidaPeloUsuario);
    EXPECT_EQ(textoConfianca(Confianca::ConferidaPeloUsuario), QStringLiteral("conferida pelo usuário"));

    const QList<RegistroHistorico> h = historico(db);
    ASSERT_EQ(h.size(), 1);
    EXPECT_EQ(h[0].tabela, kGraoP);
    EXPECT_EQ(h[0].chave, kSoja);
    EXPECT_EQ(h[0].coluna, QStringLiteral("Classe2"));
    EXPECT_EQ(h[0].anterior, QStringLiteral("70"));
    EXPECT_EQ(h[0].novo, QStringLiteral("80"));
    EXPECT_EQ(h[0].motivo, QStringLiteral("Conferido no livro, p. 102"));
    EXPECT_LE(h[0].quando.secsTo(QDateTime::currentDateTime()), 5);

    // A second correction of the same row: the history keeps both, newest first, and the decimal
    // is shown as the machine writes it.
    corrigeSoja(82.5, QStringLiteral("Outra leitura"));
    EXPECT_EQ(historico(db).first().novo, QStringLiteral("82,5"));
    EXPECT_EQ(historicos(), 2);
    EXPECT_EQ(marcas(), 1);

    // In the liming table only the row of that group changes.
    const QString calagem = QStringLiteral("Calagem");
    const QString chave = QStringLiteral("Sistema convencional (grupo 1)");
    const QString onde = QStringLiteral("SELECT pHRef FROM Calagem WHERE Texto = 'Sistema convencional' AND Grupo = %1");
    const QVariant antes = scratch.scalar(onde.arg(1));
    corrige(db, {Correcao{calagem, chave, 8, antes, 5.5}}, QStringLiteral("2016"));
    EXPECT_FLOAT_EQ(scratch.scalar(onde.arg(1)).toFloat(), 5.5f);
    EXPECT_EQ(linha(calagem, chave).confianca, Confianca::ConferidaPeloUsuario);
    EXPECT_EQ(linha(calagem, QStringLiteral("Selecione (grupo 1)")).confianca, Confianca::Alta);
}

TEST_F(ManualTablesTest, ACorrectionMadeOnAStaleReadingWritesNothing)
{
    QList<Correcao> lote{{kGraoP, QStringLiteral("Feijão"), kClasse2, scratch.cell(kGraoP, "Classe2", "Feijão"), 99},
        {kGraoP, kSoja, kClasse2, 71, 80}}; // the row holds 70, not 71
    EXPECT_THROW(corrige(db, lote, QStringLiteral("x")), StoreError);
    EXPECT_EQ(historicos(), 0);
    EXPECT_EQ(marcas(), 0);
    EXPECT_NE(scratch.cell(kGraoP, "Classe2", "Feijão"), 99);

    EXPECT_THROW(corrige(db, {{kGraoP, QStringLiteral("Cultura nenhuma"), kClasse2, 1, 2}}, QStringLiteral("x")), StoreError);
    EXPECT_THROW(corrige(db, {{kGraoP, kSoja, 0, kSoja, QStringLiteral("Soja2")}}, QStringLiteral("x")), StoreError);
}

TEST_F(ManualTablesTest, ARowIsPutBackAsTheProgramDeliversIt)
{
    EXPECT_TRUE(restauracao(db, kGraoP, kSoja).isEmpty());
    corrigeSoja(80);
    corrige(db, {Correcao{kGraoP, kSoja, 1, 2.0, 3.0}}, QStringLiteral("referência"));

    const QList<Correcao> volta = restauracao(db, kGraoP, kSoja);
    ASSERT_EQ(volta.size(), 2);
    EXPECT_EQ(textoCorrecao(volta[0]), QStringLiteral("GRAOPC1, \"Soja\", RendRef: 3 → 2"));
    restaura(db, kGraoP, kSoja, QStringLiteral("Valor original do programa restaurado"));
    EXPECT_EQ(sojaP(), 70);
    EXPECT_EQ(scratch.cell(kGraoP, "RendRef", "Soja"), 2);
    EXPECT_EQ(linha(kGraoP, kSoja).confianca, Confianca::Alta);
    EXPECT_EQ(marcas(), 0);
    EXPECT_EQ(historicos(), 4);
    EXPECT_EQ(historico(db).first().motivo, QStringLiteral("Valor original do programa restaurado"));

    EXPECT_THROW(restauracao(db, kGraoP, QStringLiteral("Cultura nenhuma")), StoreError);
}

TEST_F(ManualTablesTest, ACalculationReadsTheCorrectedValueAndTellsWhichRowsItRead)
{
    Session session(scratch.path());
    session.Analise = test::analiseComClasses(3, 2, 3);
    session.Cultivo = 1;
    session.Grupo = 1;
    DefinicoesGraos d;
    d.posicao = graos::Soja;
    d.expectativa = QStringLiteral("3");
    const auto calcula = [&]() {
        LeiturasDoCalculo leituras;
        const CalculoGraos r = CalculaGraos(session.db, session, d);
        return std::make_pair(r.nec[1], leituras.linhas());
    };
    // P: class 2 (70) + (3 - 2) x 15.
    EXPECT_EQ(calcula().first, QStringLiteral("85"));
    corrigeSoja(80);
    const auto [p, lidas] = calcula();
    EXPECT_EQ(p, QStringLiteral("95"));
    // Soybean has no nitrogen row: only the rows found are told.
    EXPECT_EQ(lidas, (QList<LinhaUsada>{{kGraoP, kSoja}, {QStringLiteral("GRAOKC1"), kSoja}}));

    // Without a listener nothing is gathered, and a listener hears only its own calculation.
    CalculaGraos(session.db, session, d);
    LeiturasDoCalculo vazia;
    EXPECT_TRUE(vazia.linhas().isEmpty());
}

// The data of a newer version of the program, made from the delivered one.
DadosEntregues versaoSeguinte(std::function<void(DadosEntregues&)> muda)
{
    DadosEntregues dados = dadosDoPrograma();
    dados.versao = kVersaoDados + 1;
    muda(dados);
    return dados;
}

LinhaEntregue& entregue(DadosEntregues& dados, const QString& tabela, const QString& chave)
{
    for (LinhaEntregue& l : dados.tabelas[tabela]) {
        if (textoChave(tabela, l.valores) == chave)
            return l;
    }
    throw std::runtime_error("no delivered row");
}

TEST_F(ManualTablesTest, ANewerVersionOfTheDataLeavesTheUsersCorrectionsAlone)
{
    corrigeSoja(80);
    const DadosEntregues nova = versaoSeguinte([](DadosEntregues& d) {
        entregue(d, kGraoP, kSoja).valores[kClasse2] = 75.0;      // corrected by the user: kept
        entregue(d, kGraoP, QStringLiteral("Feijão")).valores[kClasse2] = 91.0; // taken
        LinhaEntregue linha = entregue(d, kGraoP, QStringLiteral("Feijão"));
        linha.valores[0] = QStringLiteral("Feijão-caupi");
        d.tabelas[kGraoP] << linha; // a row the database lacks
    });

    const QString texto = AtualizaTabelasDoManual(scratch.path(), nova);
    EXPECT_EQ(sojaP(), 80);
    EXPECT_EQ(scratch.cell(kGraoP, "Classe2", "Feijão"), 91);
    EXPECT_EQ(scratch.cell(kGraoP, "Classe2", "Feijão-caupi"), 91);
    EXPECT_TRUE(texto.contains(QStringLiteral("GRAOPC1, \"Feijão\", Classe2:"))) << texto.toStdString();
    EXPECT_TRUE(texto.contains(QStringLiteral("GRAOPC1, \"Feijão-caupi\""))) << texto.toStdString();
    EXPECT_TRUE(texto.contains(QStringLiteral("GRAOPC1, \"Soja\", Classe2: 80 → 75"))) << texto.toStdString();
    EXPECT_EQ(historico(db).first().motivo, QStringLiteral("Dados do programa, versão %1").arg(kVersaoDados + 1));
    EXPECT_EQ(historicos(), 2); // the user's and the changed value

    // Once at that version, nothing more happens, and a restore now goes to the newer value.
    EXPECT_TRUE(AtualizaTabelasDoManual(scratch.path(), nova).isEmpty());
    restaura(db, kGraoP, kSoja, QStringLiteral("volta"), nova);
    EXPECT_EQ(sojaP(), 75);
}

TEST_F(ManualTablesTest, AFileOfTheVersionBeforeGetsTheHistoryTablesAndTheDeliveredValues)
{
    for (const char* tabela : {"HistoricoTabelas", "LinhasConferidas", "VersaoDados"})
        scratch.exec(QStringLiteral("DROP TABLE %1").arg(QString::fromLatin1(tabela)));
    scratch.exec(QStringLiteral("PRAGMA user_version = 2"));
    scratch.exec(QStringLiteral("UPDATE GRAOPC1 SET Classe2 = 60 WHERE Chave = 'Soja'"));

    Session session;
    const QString texto = AbreBanco(session, scratch.path());
    EXPECT_EQ(scratch.scalar(QStringLiteral("PRAGMA user_version")).toInt(), schema::kVersion);
    EXPECT_EQ(scratch.scalar(QStringLiteral("SELECT Versao FROM VersaoDados")).toInt(), kVersaoDados);
    EXPECT_EQ(sojaP(), 70);
    EXPECT_TRUE(texto.contains(QStringLiteral("Soja\", Classe2: 60 → 70"))) << texto.toStdString();
    EXPECT_TRUE(AbreBanco(session, scratch.path()).isEmpty());

    // A write that fails half-way, as on a read-only copy, leaves every row and the version as
    // they were; the program goes on with them and tries again at the next start.
    scratch.exec(QStringLiteral("UPDATE VersaoDados SET Versao = 0"));
    scratch.exec(QStringLiteral("UPDATE GRAOPC1 SET Classe2 = 60 WHERE Chave = 'Soja'"));
    scratch.exec(QStringLiteral("CREATE TRIGGER falha BEFORE INSERT ON VersaoDados BEGIN SELECT RAISE(ABORT, 'disco'); END"));
    EXPECT_TRUE(AbreBanco(session, scratch.path()).isEmpty());
    EXPECT_EQ(sojaP(), 60);
    EXPECT_EQ(historicos(), 1);
    EXPECT_EQ(scratch.scalar(QStringLiteral("SELECT Versao FROM VersaoDados")).toInt(), 0);
}

} // namespace

} // namespace lavra
