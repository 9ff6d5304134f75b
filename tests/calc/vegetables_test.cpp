#include "app/session.h"
#include "app/slots.h"
#include "base/validation.h"
#include "calc/cane.h"
#include "calc/crops.h"
#include "calc/vegetables.h"
#include "testsupport.h"

#include <gtest/gtest.h>

namespace lavra {

namespace {

using test::MachineLocale;

constexpr int kAlface = 2;

// One known analysis: organic-matter class 3, P class 2, K class 3, clay 45 % (class 2), read by
// the vegetable and cane windows from the shipped rows.
class VegetablesTest : public ::testing::Test {
protected:
    VegetablesTest()
        : session(scratch.path())
    {
        analise(3, 45);
    }

    void analise(float classeMO, float argila, int cultivo = 1)
    {
        session.Analise = test::analiseComClasses(classeMO, 2, 3);
        session.Analise[18] = argila;
        session.Cultivo = static_cast<std::int16_t>(cultivo);
    }

    QStringList hort(int posicao, int faixa = -1)
    {
        const CalculoCultura r = CalculaHortalicas(session.db, session, { posicao, faixa });
        if (r.desfecho)
            return { r.desfecho->texto };
        return lista(r.nec);
    }

    QStringList cana(int posicao, int faixa)
    {
        const CalculoCultura r = CalculaCana(session.db, session, posicao, faixa);
        if (r.desfecho)
            return { r.desfecho->texto };
        return lista(r.nec);
    }

    static QStringList lista(const TextosNec& nec) { return { nec[0], nec[1], nec[2], nec[3] }; }

    // A cell read by its column name, around the program's reading by ordinal.
    double celulaNomeada(const Consulta& c, const QString& coluna) const
    {
        return scratch.cell(c.tabela, coluna, c.chave);
    }

    MachineLocale ponto { test::pointLocale() };
    test::ScratchDatabase scratch;
    Session session;
};

TEST_F(VegetablesTest, FiguresOfTheSpecialCrops)
{
    struct Caso {
        const char* nome;
        int posicao;
        int faixa;
        float classeMO;
        float argila;
        int cultivo;
        QStringList nec; // N base, P base, K base, N cob
    };
    using namespace hortalicas;
    const QList<Caso> casos = {
        // Tomateiro2: share 0.67 of 100; P 450 (class 2), K 150 (class 3); second crop 250 and 120.
        { "tomato 75", Tomateiro, 2, 3, 45, 1, { "67", "450", "150", "33" } },
        { "tomato 75, second crop", Tomateiro, 2, 3, 45, 2, { "67", "250", "120", "33" } },
        // Alho3: 0.33 of 270.
        { "garlic 12 a 15", Alho, 3, 3, 45, 1, { "89.1", "500", "360", "180.9" } },
        // The fixed base comes out of the row's total: Batata1 100, Batata2 140, Alcachofra 150,
        // Ervilha 40. Potato reads P and K by its text alone.
        { "potato <= 20", Batata, 1, 3, 45, 1, { "10", "220", "140", "90" } },
        { "potato > 20", Batata, 2, 3, 45, 1, { "10", "220", "140", "130" } },
        { "potato > 20, second crop", Batata, 2, 3, 45, 2, { "10", "120", "120", "130" } },
        { "artichoke", Alcachofra, -1, 3, 45, 1, { "40", "140", "150", "110" } },
        { "pea", Ervilha, -1, 3, 45, 1, { "20", "160", "120", "20" } },
        // Cassava: the class number itself against 1.2 and 2.5, so MO class 2 reads column 3
        // (NMO3) and classes 3 and 4 column 4. Clay 21 % is class 3 (Mandioca1), 20 % class 4
        // (Mandioca2).
        { "cassava MO 2, clay 21", Mandioca, -1, 2, 21, 1, { "0", "70", "20", "50" } },
        { "cassava MO 3, clay 21", Mandioca, -1, 3, 21, 1, { "0", "70", "20", "20" } },
        { "cassava MO 4, clay 21", Mandioca, -1, 4, 21, 1, { "0", "70", "20", "20" } },
        { "cassava MO 2, clay 20", Mandioca, -1, 2, 20, 1, { "0", "70", "40", "40" } },
        { "cassava MO 3, clay 20", Mandioca, -1, 3, 20, 1, { "0", "70", "40", "20" } },
        { "cassava clay 20, second crop", Mandioca, -1, 3, 20, 2, { "0", "30", "40", "20" } },
    };
    for (const Caso& c : casos) {
        SCOPED_TRACE(c.nome);
        analise(c.classeMO, c.argila, c.cultivo);
        EXPECT_EQ(hort(c.posicao, c.faixa), c.nec);
    }
}

TEST_F(VegetablesTest, EveryCropEveryClassBothCropsReadsItsRows)
{
    const QStringList colunasMO = { {}, {}, "NMO2", "NMO3", "NMO4" };
    for (int cultivo : { 1, 2 }) {
        analise(3, 45, cultivo);
        for (int posicao = 0; posicao < culturasHortalicas().size(); ++posicao) {
            const qsizetype faixas = expectativasHortalicas(posicao).size();
            for (int faixa = faixas ? 1 : -1; faixa <= faixas; faixa = faixa < 0 ? 1 : faixa + 1) {
                SCOPED_TRACE(QStringLiteral("%1 %2 cultivo %3").arg(culturasHortalicas()[posicao]).arg(faixa).arg(cultivo).toStdString());
                const ChavesCultura chaves = chavesHortalicas(posicao, faixa, 2, cultivo);
                const QStringList nec = hort(posicao, faixa);
                ASSERT_EQ(nec.size(), 4) << nec.join(' ').toStdString();
                // P and K: the class column of the first crop, the only column of the second.
                const QString colP = cultivo == 1 ? QStringLiteral("Classe2") : QStringLiteral("Dose");
                const QString colK = cultivo == 1 ? QStringLiteral("Classe3") : QStringLiteral("Dose");
                EXPECT_EQ(nec[1].toDouble(), celulaNomeada(chaves.p, colP));
                EXPECT_EQ(nec[2].toDouble(), celulaNomeada(chaves.k, colK));
                // N: base and topdressing add up to the total of the organic-matter class
                // (cassava reads class 4 for its class 3).
                const int mo = posicao == hortalicas::Mandioca ? 4 : 3;
                const double total = celulaNomeada(chaves.n, colunasMO[mo]);
                EXPECT_NEAR(nec[0].toDouble() + nec[3].toDouble(), total, 1e-9);
                if (posicao != hortalicas::Alcachofra && posicao != hortalicas::Batata && posicao != hortalicas::Ervilha) {
                    EXPECT_NEAR(nec[0].toDouble(), celulaNomeada(chaves.n, "FracaoBase") * total, 1e-4);
                }
            }
        }
    }
}

TEST_F(VegetablesTest, RefusalsAndWhatARunLeaves)
{
    EXPECT_EQ(hort(-1), QStringList { kMsgSelecioneCultura });
    // A crop with classes and none picked: the boxes are emptied first.
    const CalculoCultura semFaixa = CalculaHortalicas(session.db, session, { hortalicas::Tomateiro, 0 });
    EXPECT_EQ(semFaixa.desfecho->texto, kMsgInformeExpectativa);
    EXPECT_TRUE(semFaixa.substituiResultado);

    session.ObsAjuste = QStringLiteral("ajustada");
    session.RefazPlano = 0;
    session.CultivoTxt.clear();
    analise(3, 45, 2);
    EXPECT_EQ(hort(kAlface).size(), 4);
    EXPECT_TRUE(session.ObsAjuste.isEmpty());
    EXPECT_EQ(session.RefazPlano, 1);
    EXPECT_EQ(session.CultivoTxt, QStringLiteral("2"));

    // The fixed base of potato needs its nitrogen row: a clear fault, not a conversion error.
    scratch.exec(QStringLiteral("DELETE FROM HORTN WHERE Chave = 'Batata1'"));
    const CalculoCultura semLinha = CalculaHortalicas(session.db, session, { hortalicas::Batata, 1 });
    ASSERT_TRUE(semLinha.desfecho);
    EXPECT_EQ(semLinha.desfecho->tipo, TipoDesfecho::Critico);
    EXPECT_EQ(lista(semLinha.nec), QStringList({ "", "", "", "" }));
    // Any other crop without a row keeps the boxes of that row empty, as the tables leave them.
    scratch.exec(QStringLiteral("DELETE FROM HORTN WHERE Chave = 'Alface'"));
    EXPECT_EQ(hort(kAlface), QStringList({ "", "70", "120", "" }));
}

TEST_F(VegetablesTest, CaneKeysAndBaseNitrogen)
{
    // Plant cane: one N row (0, 100, 70, 50), 15 at planting; ratoon by band, none at planting.
    EXPECT_EQ(cana(cana::CanaPlanta, 2), QStringList({ "15", "80", "50", "55" }));
    EXPECT_EQ(cana(cana::CanaSoca, 2), QStringList({ "0", "30", "50", "70" }));
    EXPECT_EQ(cana(cana::CanaSoca, 0), QStringList { kMsgInformeExpectativa });
    EXPECT_EQ(cana(-1, 1), QStringList { kMsgSelecioneCultura });
    // Every band of both: the first-crop tables, whatever the crop order, and no crop digit left.
    session.CultivoTxt = QStringLiteral("2");
    for (int cultivo : { 1, 2 }) {
        analise(3, 45, cultivo);
        for (int posicao : { cana::CanaPlanta, cana::CanaSoca }) {
            for (int faixa = 1; faixa <= 3; ++faixa) {
                SCOPED_TRACE(QStringLiteral("%1 %2 cultivo %3").arg(posicao).arg(faixa).arg(cultivo).toStdString());
                const ChavesCultura chaves = chavesCana(posicao, faixa);
                const QStringList nec = cana(posicao, faixa);
                ASSERT_EQ(nec.size(), 4);
                EXPECT_EQ(nec[0], posicao == cana::CanaPlanta ? "15" : "0");
                EXPECT_EQ(nec[0].toDouble() + nec[3].toDouble(), celulaNomeada(chaves.n, "NMO3"));
                EXPECT_EQ(nec[1].toDouble(), celulaNomeada(chaves.p, "Classe2"));
                EXPECT_EQ(nec[2].toDouble(), celulaNomeada(chaves.k, "Classe3"));
            }
        }
    }
    EXPECT_EQ(session.CultivoTxt, QStringLiteral("2"));
}

TEST(YieldQuestionTest, AnswersUnderBothDecimalSymbols)
{
    struct Caso {
        QString resposta;
        QString recusa; // empty: accepted
        float valor;
    };
    const QString faixa = mensagemFaixa(Grandeza::Expectativa);
    {
        MachineLocale virgula(test::commaLocale());
        for (const Caso& c : QList<Caso> { { "", kMsgFornecaExpectativa, 0 }, { "abc", kMsgFornecaNumero, 0 },
                 { "1.5", kMsgFornecaNumero, 0 }, { "22,5", {}, 22.5f }, { "-3", faixa, 0 } }) {
            const RespostaRendimento r = LeRendimento(c.resposta);
            EXPECT_EQ(r.recusa ? r.recusa->texto : QString(), c.recusa) << c.resposta.toStdString();
            EXPECT_EQ(r.valor, c.valor);
            if (r.recusa) {
                EXPECT_EQ(r.recusa->tipo, TipoDesfecho::Simples);
            }
        }
    }
    MachineLocale ponto(test::pointLocale());
    EXPECT_EQ(LeRendimento("22,5").recusa->texto, kMsgFornecaNumero);
    EXPECT_EQ(LeRendimento("22.5").valor, 22.5f);
    EXPECT_EQ(perguntaRendimento(" > 20"),
        QStringLiteral("Digite um valor de expectativa de rendimento para a classe  > 20 t/ha"));
}

TEST_F(VegetablesTest, WayOnCarriesTheTypedYieldOnlyWhereTheCropHasClasses)
{
    test::FakeHost janelas;
    const TextosNec nec = { "67", "450", "150", "33" };
    session.Dados[slot::kExpectativa] = 0;
    // Tomato asks nothing: the yield of an earlier question goes on, not its class.
    session.ExpectHort = 18;
    EXPECT_FALSE(ProssegueHortalicas(session, janelas, hortalicas::Tomateiro, nec));
    EXPECT_EQ(session.Dados[slot::kCultura].toString(), QStringLiteral("Tomateiro"));
    EXPECT_EQ(session.Dados[slot::kExpectativa].toFloat(), 18.0f);
    session.Dados[slot::kExpectativa] = 0;
    EXPECT_FALSE(ProssegueHortalicas(session, janelas, kAlface, nec));
    EXPECT_EQ(session.Dados[slot::kExpectativa].toInt(), 0);

    session.ExpectHort = 95;
    EXPECT_FALSE(ProssegueCana(session, janelas, cana::CanaPlanta, { "15", "80", "50", "55" }));
    EXPECT_EQ(session.Dados[slot::kCultura].toString(), QStringLiteral("Cana-planta"));
    EXPECT_EQ(session.Dados[slot::kExpectativa].toFloat(), 95.0f);
    EXPECT_EQ(session.Nec[3].toFloat(), 55.0f);
}

} // namespace
} // namespace lavra
