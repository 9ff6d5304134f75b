#include "report/saved.h"
#include "store/store.h"
#include "store/storeerror.h"
#include "testsupport.h"

#include <gtest/gtest.h>

using namespace lavra;
using namespace lavra::report;

namespace {

const QString kAnalise = QStringLiteral("Boa Vista/G1/01/08/2021");
const QString kOutra = QStringLiteral("Boa Vista/G2/01/08/2021");
const QString kMilho = QStringLiteral("Milho-Primeiro-10/10/2021");
const QString kSoja = QStringLiteral("Soja-Segundo-05/03/2022");

void insere(const test::ScratchDatabase& scratch, const QString& tabela, const QString& analise, const QString& cultivo,
            const QString& info = QStringLiteral("antes"))
{
    scratch.exec(QStringLiteral("INSERT INTO %1 (CodAnalise, CodCultivo, Info) VALUES ('%2', '%3', '%4')")
                     .arg(tabela, analise, cultivo, info));
}

QString info(const test::ScratchDatabase& scratch, const QString& tabela, const QString& analise,
             const QString& cultivo)
{
    return scratch
        .scalar(QStringLiteral("SELECT Info FROM %1 WHERE CodAnalise = '%2' AND CodCultivo = '%3'")
                    .arg(tabela, analise, cultivo))
        .toString();
}

int linhas(const test::ScratchDatabase& scratch, const QString& tabela)
{
    return scratch.scalar(QStringLiteral("SELECT COUNT(*) FROM ") + tabela).toInt();
}

class SavedByKindTest : public ::testing::TestWithParam<TipoLaudo> {
protected:
    SavedByKindTest()
    {
        // The same key under another analysis, and this analysis under another key, must stay apart.
        for (const DefinicaoLaudo& d : definicoes()) {
            insere(scratch, d.tabela, kOutra, kMilho);
            insere(scratch, d.tabela, kAnalise, kSoja);
            insere(scratch, d.tabela, kAnalise, kMilho);
        }
    }
    const DefinicaoLaudo& laudo() const { return definicao(GetParam()); }

    test::ScratchDatabase scratch;
    Store db{scratch.path()};
};

TEST_P(SavedByKindTest, OrientationsGoToTheInfoOfTheOneMatchingRowAndReplaceIt)
{
    EXPECT_TRUE(GravaInfo(db, GetParam(), kAnalise, kMilho, QStringLiteral("Aplicar a lanço")));
    EXPECT_TRUE(GravaInfo(db, GetParam(), kAnalise, kMilho, QStringLiteral("Incorporar")));
    EXPECT_EQ(info(scratch, laudo().tabela, kAnalise, kMilho), QStringLiteral("Incorporar"));
    EXPECT_FALSE(db.cn.isOpen());
    for (const DefinicaoLaudo& d : definicoes()) {
        EXPECT_EQ(info(scratch, d.tabela, kOutra, kMilho), QStringLiteral("antes")) << d.tabela.toStdString();
        EXPECT_EQ(info(scratch, d.tabela, kAnalise, kSoja), QStringLiteral("antes")) << d.tabela.toStdString();
        if (d.tipo != GetParam()) {
            EXPECT_EQ(info(scratch, d.tabela, kAnalise, kMilho), QStringLiteral("antes")) << d.tabela.toStdString();
        }
    }
}

TEST_P(SavedByKindTest, KeysOfAnAnalysisComeInTableOrderAndAreDeletedOneByOne)
{
    EXPECT_EQ(RecomendacoesDaAnalise(db, laudo().tabela, kAnalise), (QStringList{kSoja, kMilho}));
    EXPECT_EQ(RecomendacoesDaAnalise(db, laudo().tabela, QString()), QStringList());

    EXPECT_EQ(PerguntaExclusao(db, laudo().tabela, kAnalise, kMilho),
              Desfecho::pergunta(QStringLiteral("A recomendação Milho-Primeiro-10/10/2021 será excluída! Confirma?")));
    EXPECT_TRUE(ExcluiRecomendacao(db, laudo().tabela, kAnalise, kMilho));
    EXPECT_EQ(RecomendacoesDaAnalise(db, laudo().tabela, kAnalise), QStringList{kSoja});
    EXPECT_EQ(RecomendacoesDaAnalise(db, laudo().tabela, kOutra), QStringList{kMilho});
    for (const DefinicaoLaudo& d : definicoes())
        EXPECT_EQ(linhas(scratch, d.tabela), d.tipo == GetParam() ? 2 : 3) << d.tabela.toStdString();

    // Gone, it is neither asked about nor deleted again.
    EXPECT_EQ(PerguntaExclusao(db, laudo().tabela, kAnalise, kMilho), std::nullopt);
    EXPECT_FALSE(ExcluiRecomendacao(db, laudo().tabela, kAnalise, kMilho));
    EXPECT_EQ(linhas(scratch, laudo().tabela), 2);
}

INSTANTIATE_TEST_SUITE_P(Kinds, SavedByKindTest,
                         ::testing::Values(TipoLaudo::Formulas, TipoLaudo::Formulacao, TipoLaudo::Florestais),
                         [](const auto& info) { return definicao(info.param).tabela.toStdString(); });

TEST(SavedTest, NoMatchingRowWritesNothing)
{
    test::ScratchDatabase scratch;
    Store db(scratch.path());
    insere(scratch, QStringLiteral("RecoForm"), kAnalise, kMilho);
    struct Case {
        QString analise, cultivo;
    };
    // Keys compare exactly: no prefix, no case folding, and an empty key is no key.
    const Case cases[] = {{kAnalise, kSoja}, {kOutra, kMilho}, {kAnalise, kMilho.left(5)},
                          {kAnalise, kMilho.toUpper()}, {QString(), QString()}};
    for (const Case& c : cases) {
        EXPECT_FALSE(GravaInfo(db, TipoLaudo::Formulas, c.analise, c.cultivo, QStringLiteral("x")));
        EXPECT_EQ(PerguntaExclusao(db, QStringLiteral("RecoForm"), c.analise, c.cultivo), std::nullopt);
        EXPECT_FALSE(ExcluiRecomendacao(db, QStringLiteral("RecoForm"), c.analise, c.cultivo));
    }
    EXPECT_EQ(info(scratch, QStringLiteral("RecoForm"), kAnalise, kMilho), QStringLiteral("antes"));
    EXPECT_EQ(linhas(scratch, QStringLiteral("RecoForm")), 1);
}

TEST(SavedTest, AFailedWriteOrDeletionLeavesTheTableAndFreesThePair)
{
    test::ScratchDatabase scratch;
    Store db(scratch.path());
    insere(scratch, QStringLiteral("RecoFormulac"), kAnalise, kMilho);
    scratch.exec(QStringLiteral("CREATE TRIGGER falhaU BEFORE UPDATE ON RecoFormulac BEGIN SELECT RAISE(ABORT, 'disco cheio'); END"));
    scratch.exec(QStringLiteral("CREATE TRIGGER falhaD BEFORE DELETE ON RecoFormulac BEGIN SELECT RAISE(ABORT, 'disco cheio'); END"));

    try {
        GravaInfo(db, TipoLaudo::Formulacao, kAnalise, kMilho, QStringLiteral("novo"));
        ADD_FAILURE() << "the write should have failed";
    } catch (const StoreError& error) {
        EXPECT_TRUE(error.message().contains(QStringLiteral("disco cheio"))) << error.what();
    }
    EXPECT_FALSE(db.cn.isOpen());
    EXPECT_THROW(ExcluiRecomendacao(db, QStringLiteral("RecoFormulac"), kAnalise, kMilho), StoreError);
    EXPECT_EQ(info(scratch, QStringLiteral("RecoFormulac"), kAnalise, kMilho), QStringLiteral("antes"));
    EXPECT_EQ(linhas(scratch, QStringLiteral("RecoFormulac")), 1);

    // Nothing was left half-open: the next write goes through.
    scratch.exec(QStringLiteral("DROP TRIGGER falhaU"));
    EXPECT_TRUE(GravaInfo(db, TipoLaudo::Formulacao, kAnalise, kMilho, QStringLiteral("novo")));
    EXPECT_EQ(info(scratch, QStringLiteral("RecoFormulac"), kAnalise, kMilho), QStringLiteral("novo"));
}

} // namespace
