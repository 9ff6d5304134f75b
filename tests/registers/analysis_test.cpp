#include "app/session.h"
#include "base/validation.h"
#include "registers/analysis.h"
#include "registers/interpretation.h"
#include "store/storeerror.h"
#include "testsupport.h"

#include <QDate>
#include <gtest/gtest.h>

using namespace lavra;

namespace {

// Numbers are written here with a point and typed with the machine's symbol.
QString n(const char* text)
{
    return QString::fromLatin1(text).replace(QLatin1Char('.'), decimalSymbol());
}

// ---- CTC and saturation by bases ----

struct CTCCase {
    const char* ca;
    const char* mg;
    const char* hAl;
    const char* k;
    const char* ctc;  // nullptr: nothing is worked out
    const char* bases;
};

class CalculaCTCTest : public ::testing::TestWithParam<QLocale> {};

TEST_P(CalculaCTCTest, WorksInSinglesAndShowsTwoDecimals)
{
    test::MachineLocale locale(GetParam());
    const CTCCase cases[] = {
        {"5", "2", "3", "78", "10.20", "70.58"},
        {"4.1", "1.6", "5.5", "96", "11.44", "51.93"},
        {"2", "1", "1", "0", "4.00", "75.00"},
        {"1.5", "0.5", "2", "39.9", "4.10", "51.22"},  // 4.0999999 in singles reads 4.1
        {"0.125", "0", "0", "0", "0.13", "100.00"},    // halves away from zero
        {"0", "0", "2.5", "0", "2.50", "0.00"},
        {"0", "0", "0", "0", "0.00", "0.00"},          // nothing to saturate
        {"", "2", "3", "78", nullptr, nullptr},
        {"5", "2", "3", "", nullptr, nullptr},
    };
    for (const CTCCase& c : cases) {
        const auto result = CalculaCTC(n(c.ca), n(c.mg), n(c.hAl), n(c.k));
        SCOPED_TRACE(std::string(c.ca) + " " + c.mg + " " + c.hAl + " " + c.k);
        if (!c.ctc) {
            EXPECT_FALSE(result);
            continue;
        }
        ASSERT_TRUE(result);
        EXPECT_EQ(result->ctc, n(c.ctc));
        EXPECT_EQ(result->bases, n(c.bases));
    }
}

INSTANTIATE_TEST_SUITE_P(Locales, CalculaCTCTest, ::testing::Values(test::commaLocale(), test::pointLocale()));

// ---- The register on a scratch database ----

class AnalysisRegisterTest : public ::testing::Test {
protected:
    test::ScratchDatabase scratch;
    Session session{scratch.path()};
    QStringList questions;

    // The clients the analyses below belong to; an analysis is taken only for a registered one.
    void SetUp() override
    {
        scratch.exec(QStringLiteral(
            "INSERT INTO Clientes (Nome) VALUES ('João'), ('Bruno'), ('Ana'), ('ANA'), ('Ana Maria'), ('Carla  ')"));
    }

    // João's analysis of 15/03/2021, by Mehlich: client .. number, date, pH .. K, CTC, bases, method.
    static CamposAnalise sample()
    {
        return {"João", "Passo Fundo", "Santa Rita", "Talhão 3", n("12.5"), "L-123", "15/03/2021",
                n("5.2"), n("4.1"), n("1.6"), n("0.4"), n("5.5"), n("5.8"), n("3.2"), "45", n("8.4"), "96",
                n("11.44"), n("51.93"), true};
    }

    // Runs Executar, answering every question with the given answer.
    ResultadoCadastro run(const QString& operacao, const CamposAnalise& campos, const QString& codigo = {},
                          Resposta answer = Resposta::Sim)
    {
        EntradaCadastro entrada{campos, operacao, codigo};
        for (;;) {
            const ResultadoCadastro r = CadastraAnalise(session.db, entrada);
            if (!r.desfecho || r.desfecho->tipo != TipoDesfecho::Pergunta)
                return r;
            questions << r.desfecho->texto;
            entrada.resposta = answer;
        }
    }

    QString add(const CamposAnalise& campos)
    {
        const ResultadoCadastro r = run(kCadastro, campos);
        EXPECT_EQ(r.seguimento, Seguimento::Concluida) << (r.desfecho ? r.desfecho->texto.toStdString() : "");
        return r.codAnalise;
    }

    int rows() const { return scratch.scalar(QStringLiteral("SELECT COUNT(*) FROM Analises")).toInt(); }

    QVariant cell(const QString& codigo, int ordinal)
    {
        CarregaAnalise(session, codigo);
        return session.Analise.value(ordinal);
    }
};

class AnalysisColumnsTest : public AnalysisRegisterTest, public ::testing::WithParamInterface<QLocale> {};

TEST_P(AnalysisColumnsTest, RegistrationWritesEveryColumn)
{
    test::MachineLocale locale(GetParam());
    const QString codigo = add(sample());
    EXPECT_EQ(codigo, QStringLiteral("Santa Rita/Talhão 3/15/03/2021"));
    EXPECT_TRUE(questions == QStringList{perguntaArroz(false)});

    CarregaAnalise(session, codigo);
    const QVector<QVariant>& a = session.Analise;
    ASSERT_EQ(a.size(), analise::kColunas);
    const QStringList texts = {codigo, "João", "Passo Fundo", "Santa Rita", "Talhão 3"};
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(a[i].toString(), texts[i]) << i;
    EXPECT_EQ(a[5].toDate(), QDate(2021, 3, 15));
    EXPECT_EQ(a[7].toString(), QStringLiteral("L-123"));
    const float singles[] = {12.5f, 0, 5.2f, 4.1f, 1.6f, 0.4f, 5.5f,
                             100.0f * 0.4f / (96.0f / 399.0f + 4.1f + 1.6f + 0.4f),
                             51.93f, 11.44f, 5.8f, 3.2f, 45.0f, 8.4f, 96.0f};
    for (int ordinal = 6; ordinal <= 20; ++ordinal) {
        if (ordinal != 7) {
            EXPECT_EQ(a[ordinal].toFloat(), singles[ordinal - 6]) << ordinal;
        }
    }
    // MetodoP, area condition, four reserved zeros, then the classes pH .. SatBases.
    const int whole[] = {1, 1, 0, 0, 0, 0, 2, 4, 4, 3, 3, 4, 3, 2, 2};
    for (int ordinal = 21; ordinal < analise::kColunas; ++ordinal)
        EXPECT_EQ(a[ordinal].toInt(), whole[ordinal - 21]) << ordinal;
}

INSTANTIATE_TEST_SUITE_P(Locales, AnalysisColumnsTest, ::testing::Values(test::commaLocale(), test::pointLocale()));

TEST_F(AnalysisRegisterTest, RiceChangesPhosphorusClassOnlyUnderMehlich)
{
    struct Case {
        bool resina;
        bool arroz;
        int classeP;
    };
    const Case cases[] = {{false, false, 3}, {false, true, 4}, {true, false, 2}, {true, true, 2}};
    int day = 1;
    for (const Case& c : cases) {
        CamposAnalise campos = sample();
        campos.mehlich = !c.resina;
        campos.resina = c.resina;
        campos.arroz = c.arroz;
        campos.data = QStringLiteral("%1/04/2021").arg(day++, 2, 10, QLatin1Char('0'));
        const QString codigo = add(campos);
        EXPECT_EQ(cell(codigo, 21).toInt(), c.resina ? 2 : 1);
        EXPECT_EQ(cell(codigo, 22).toInt(), c.arroz ? 2 : 1);
        EXPECT_EQ(cell(codigo, 31).toInt(), c.classeP) << c.resina << c.arroz;
    }
    EXPECT_EQ(questions.count(perguntaArroz(true)), 2);

    // No to the question writes nothing.
    CamposAnalise campos = sample();
    campos.data = QStringLiteral("01/06/2021");
    const ResultadoCadastro desistiu = run(kCadastro, campos, {}, Resposta::Nao);
    EXPECT_EQ(desistiu.desfecho, Parada{});
    EXPECT_EQ(desistiu.seguimento, Seguimento::Fica);
    EXPECT_EQ(rows(), 4);
}

TEST_F(AnalysisRegisterTest, RefusalsWriteNothing)
{
    test::MachineLocale locale(test::commaLocale());
    struct Case {
        QString CamposAnalise::*campo;
        const char* typed;
        QString message;
        QString field;
    };
    const QString noDay = QStringLiteral("Data inexistente: 31/02/2010. Verifique o dia e o mês.");
    const Case cases[] = {
        {&CamposAnalise::cliente, "", kMsgCamposVazios, "txtCliente"},
        {&CamposAnalise::fazenda, "   ", kMsgCamposVazios, "txtFazenda"},
        {&CamposAnalise::ctc, "", kMsgCamposVazios, "txtCTC"},  // no CTC worked out
        {&CamposAnalise::ca, "-5", kMsgSimboloDecimal, "txtCa"},
        {&CamposAnalise::p, "8.4", kMsgSimboloDecimal, "txtP"},  // a point on a comma machine
        {&CamposAnalise::area, "12a", kMsgValorInvalido, QStringLiteral("txtÁrea")},
        {&CamposAnalise::pH, "14,2", QStringLiteral("O pH deve estar entre 0 e 14."), "txtpH"},
        {&CamposAnalise::argila, "101", QStringLiteral("A argila deve estar entre 0 e 100 %."), "txtArgila"},
        // Beyond a 32-bit float.
        {&CamposAnalise::p, "9999999999999999999999999999999999999999",
         QStringLiteral("O fósforo (P) deve estar entre 0 e 10000 mg/dm³."), "txtP"},
        {&CamposAnalise::cliente, "Daniel", kMsgClienteNaoCadastrado, "txtCliente"},
        {&CamposAnalise::cliente, "JOÃO", kMsgClienteNaoCadastrado, "txtCliente"},  // in other letters
        {&CamposAnalise::data, "//", kMsgDataInvalida, "mskData"},
        {&CamposAnalise::data, "10/13/2020", kMsgDataInvalida, "mskData"},
        {&CamposAnalise::data, "31/02/2010", noDay, "mskData"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.typed);
        CamposAnalise campos = sample();
        campos.*c.campo = QString::fromUtf8(c.typed);
        EXPECT_EQ(run(kCadastro, campos).desfecho, Desfecho::aviso(c.message, c.field));
    }
    CamposAnalise semMetodo = sample();
    semMetodo.mehlich = false;
    EXPECT_EQ(run(kCadastro, semMetodo).desfecho, Desfecho::aviso(kMsgMetodoP));
    CamposAnalise semBases = sample();
    semBases.ca = semBases.mg = semBases.al = semBases.k = QStringLiteral("0");
    EXPECT_EQ(run(kCadastro, semBases).desfecho, Desfecho::aviso(kMsgSemBases, "txtCa"));
    const ResultadoCadastro semOperacao = run(QString(), sample());
    EXPECT_EQ(semOperacao.desfecho, Desfecho::aviso(kMsgNenhumaAcao));
    EXPECT_EQ(semOperacao.seguimento, Seguimento::Fica);
    EXPECT_EQ(rows(), 0);
    EXPECT_FALSE(session.db.cn.isOpen());
}

TEST_F(AnalysisRegisterTest, BlanksAroundTheTextsAreNotKept)
{
    CamposAnalise campos = sample();
    campos.cliente = QStringLiteral(" João  ");
    campos.fazenda = QStringLiteral("Santa Rita ");
    campos.pH = QStringLiteral(" 5 ");
    const QString codigo = add(campos);
    EXPECT_EQ(codigo, QStringLiteral("Santa Rita/Talhão 3/15/03/2021"));
    EXPECT_EQ(cell(codigo, 1).toString(), QStringLiteral("João"));
    EXPECT_EQ(cell(codigo, 8).toFloat(), 5.0f);

    // A name registered with blanks is matched, and the analysis carries it as registered, so the
    // pickers find it under that client.
    campos.cliente = QStringLiteral("Carla");
    campos.data = QStringLiteral("16/03/2021");
    EXPECT_EQ(cell(add(campos), 1).toString(), QStringLiteral("Carla  "));
    EXPECT_EQ(ClienteRegistrado(session.db, QStringLiteral("carla")), std::nullopt);
    EXPECT_FALSE(session.db.cn.isOpen());
}

TEST_F(AnalysisRegisterTest, SameFarmFieldAndDateIsRefusedAndAnEditKeepsOrChangesTheCode)
{
    const QString first = add(sample());
    // Even for another client.
    CamposAnalise bruno = sample();
    bruno.cliente = QStringLiteral("Bruno");
    const ResultadoCadastro r0 = run(kCadastro, bruno);
    EXPECT_EQ(r0.desfecho, Desfecho::aviso(kMsgDuplicacao));
    EXPECT_EQ(r0.codAnalise, first);
    EXPECT_EQ(rows(), 1);

    CamposAnalise second = sample();
    second.data = QStringLiteral("16/03/2021");
    const QString other = add(second);

    // Same farm, field and date: no duplication test, the row changes in place.
    CamposAnalise edited = sample();
    edited.pH = QStringLiteral("6");
    EXPECT_EQ(run(kEdicao, edited, first).seguimento, Seguimento::Concluida);
    EXPECT_EQ(cell(first, 8).toFloat(), 6.0f);
    EXPECT_EQ(cell(first, 27).toInt(), 3);

    // Onto the other analysis's date: refused.
    edited.data = QStringLiteral("16/03/2021");
    EXPECT_EQ(run(kEdicao, edited, first).desfecho, Desfecho::aviso(kMsgDuplicacao));

    // A free date: the code follows the fields.
    edited.data = QStringLiteral("17/03/2021");
    const ResultadoCadastro r = run(kEdicao, edited, first);
    EXPECT_EQ(r.seguimento, Seguimento::Concluida);
    EXPECT_EQ(r.codAnalise, first);
    EXPECT_EQ(scratch.scalar(QStringLiteral("SELECT COUNT(*) FROM Analises WHERE Código = 'Santa Rita/Talhão "
                                            "3/17/03/2021'")).toInt(), 1);
    EXPECT_EQ(rows(), 2);
    EXPECT_EQ(cell(other, 0).toString(), other);
}

TEST_F(AnalysisRegisterTest, RecommendationsHoldEditAndDeletionBack)
{
    // Every recommendation blocks the edit; a forest one does not block the deletion.
    const std::pair<const char*, bool> cases[] = {{"RecoForm", false}, {"RecoFormulac", false}, {"RecoFlorest", true}};
    for (const auto& [table, deletable] : cases) {
        SCOPED_TRACE(table);
        const QString codigo = add(sample());
        scratch.exec(QStringLiteral("INSERT INTO %1 (CodAnalise) VALUES ('%2')").arg(QString::fromLatin1(table), codigo));

        const ResultadoCadastro edit = run(kEdicao, sample(), codigo);
        EXPECT_EQ(edit.desfecho, Desfecho::critico(kMsgEdicaoComRecomendacao));

        const ResultadoCadastro del = run(kExclusao, CamposAnalise{}, codigo);
        EXPECT_EQ(del.seguimento, deletable ? Seguimento::Concluida : Seguimento::Fica);
        if (!deletable) {
            EXPECT_EQ(del.desfecho, Desfecho::critico(kMsgExclusaoComRecomendacao));
            scratch.exec(QStringLiteral("DELETE FROM Analises"));
        }
        EXPECT_EQ(rows(), 0);
        scratch.exec(QStringLiteral("DELETE FROM %1").arg(QString::fromLatin1(table)));
    }
}

TEST_F(AnalysisRegisterTest, DeletionAsksAndNoKeepsTheRow)
{
    const QString codigo = add(sample());
    questions.clear();
    EXPECT_EQ(run(kExclusao, {}, codigo, Resposta::Nao).seguimento, Seguimento::NaoExcluida);
    EXPECT_TRUE(questions == QStringList{codigo + QStringLiteral(" será excluída, confirma?")});
    EXPECT_EQ(rows(), 1);

    // A code that no row has: nothing to ask.
    questions.clear();
    EXPECT_EQ(run(kExclusao, {}, QStringLiteral("x/y/01/01/2000")).seguimento, Seguimento::NaoExcluida);
    EXPECT_TRUE(questions.isEmpty());

    EXPECT_EQ(run(kExclusao, {}, codigo).seguimento, Seguimento::Concluida);
    EXPECT_EQ(rows(), 0);
}

TEST_F(AnalysisRegisterTest, DatabaseFailureLeavesTheTableAsItWas)
{
    const QString codigo = add(sample());
    for (const char* evento : {"INSERT", "UPDATE"})
        scratch.exec(QStringLiteral("CREATE TRIGGER falha_%1 BEFORE %1 ON Analises BEGIN SELECT RAISE(ABORT, 'disco "
                                    "cheio'); END").arg(QString::fromLatin1(evento)));
    CamposAnalise other = sample();
    other.p = n("9.5");
    other.data = QStringLiteral("20/03/2021");
    EXPECT_THROW(run(kCadastro, other), StoreError);
    EXPECT_EQ(rows(), 1);
    EXPECT_FALSE(session.db.cn.isOpen());

    other.data = sample().data;
    EXPECT_THROW(run(kEdicao, other, codigo), StoreError);
    EXPECT_EQ(cell(codigo, 19).toFloat(), 8.4f);
}

TEST_F(AnalysisRegisterTest, LoadingTakesAQuoteAndRefusesAMissingCode)
{
    test::MachineLocale locale(test::commaLocale());
    CamposAnalise campos = sample();
    campos.fazenda = QStringLiteral("D'Ávila");
    campos.resina = true;
    campos.mehlich = false;
    campos.arroz = true;
    const QString codigo = add(campos);
    EXPECT_EQ(cell(codigo, 3).toString(), QStringLiteral("D'Ávila"));

    const CamposAnalise back = LeAnalise(session.db, codigo, QStringLiteral("João"));
    EXPECT_EQ(back.fazenda, QStringLiteral("D'Ávila"));
    EXPECT_EQ(back.data, QStringLiteral("15/03/2021"));
    EXPECT_EQ(back.area, QStringLiteral("12,5"));
    EXPECT_EQ(back.pH, QStringLiteral("5,2"));
    EXPECT_EQ(back.smp, QStringLiteral("5,8"));
    EXPECT_TRUE(back.resina && !back.mehlich && back.arroz);
    EXPECT_TRUE(back.ctc.isEmpty());

    EXPECT_THROW(LeAnalise(session.db, codigo, QStringLiteral("JOÃO")), StoreError);
    EXPECT_THROW(CarregaAnalise(session, QStringLiteral("Santa Rita/%/15/03/2021")), StoreError);
    EXPECT_FALSE(session.db.cn.isOpen());
}

TEST_F(AnalysisRegisterTest, AnalysesBelongToTheExactName)
{
    const std::pair<const char*, const char*> owners[] = {{"Ana", "01"}, {"ANA", "02"}, {"Ana Maria", "03"}, {"Ana", "04"}};
    for (const auto& [cliente, dia] : owners) {
        CamposAnalise campos = sample();
        campos.cliente = QString::fromUtf8(cliente);
        campos.data = QStringLiteral("%1/05/2021").arg(QString::fromLatin1(dia));
        add(campos);
    }
    EXPECT_EQ(AnalisesDoCliente(session.db, QStringLiteral("Ana")),
              (QStringList{"Santa Rita/Talhão 3/01/05/2021", "Santa Rita/Talhão 3/04/05/2021"}));
    EXPECT_TRUE(AnalisesDoCliente(session.db, QStringLiteral("Bruno")).isEmpty());
}

TEST(BuscaClienteTest, FirstNameStartingWithTheTextIgnoringCase)
{
    const QStringList nomes = {"Ana", "Bruno", "bruna", "Carlos"};
    const std::pair<const char*, int> cases[] = {{"", 0}, {"b", 1}, {"BRUNA", 2}, {"brun", 1}, {"car", 3},
                                                 {"x", -1}, {"Carlos Silva", -1}};
    for (const auto& [texto, linha] : cases)
        EXPECT_EQ(BuscaCliente(nomes, QString::fromLatin1(texto)), linha) << texto;
    EXPECT_EQ(BuscaCliente({}, QString()), -1);
}

} // namespace
