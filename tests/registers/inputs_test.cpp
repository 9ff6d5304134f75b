#include "registers/inputs.h"
#include "testsupport.h"

#include <gtest/gtest.h>

using namespace lavra;

namespace {

Fertilizante organic(const char* ms, const char* ifn, const char* ifp = "0.8", const char* ifk = "1")
{
    return {"1.5", "2", "1", "Cama de aviário", "60", QString::fromLatin1(ms), QString::fromLatin1(ifn),
            QString::fromLatin1(ifp), QString::fromLatin1(ifk)};
}

TEST(InputsTest, OrganicFertilisersNeedNumericIndicesWithinTheirLimits)
{
    test::MachineLocale point(test::pointLocale());
    struct Case {
        Fertilizante f;
        TipoAdubo tipo;
        std::optional<QString> refusal;
    };
    const Case cases[] = {
        {organic("75", "0.5"), TipoAdubo::OrganicoSolido, std::nullopt},
        {organic("100", "1"), TipoAdubo::OrganicoSolido, std::nullopt},
        {organic("---", "0.5"), TipoAdubo::OrganicoSolido, kMsgMsOuIndice},
        {organic("75", "---"), TipoAdubo::OrganicoSolido, kMsgMsOuIndice},
        {organic("100.5", "0.5"), TipoAdubo::OrganicoSolido, kMsgMsAte100},
        {organic("75", "1.01"), TipoAdubo::OrganicoSolido, kMsgIndiceAte1},
        {organic("---", "0.5"), TipoAdubo::OrganicoLiquido, std::nullopt},
        {organic("---", "0.5", "x"), TipoAdubo::OrganicoLiquido, kMsgIndiceNumero},
        {organic("---", "0.5", "0.5", "1.2"), TipoAdubo::OrganicoLiquido, kMsgIndiceAte1},
        {organic("---", "---", "---", "---"), TipoAdubo::Mineral, std::nullopt},
    };
    for (const Case& c : cases) {
        const Parada v = verificaFertilizante(c.f, c.tipo);
        EXPECT_EQ(v ? std::optional<QString>(v->texto) : std::nullopt, c.refusal) << c.f.ms.toStdString();
    }
}

TEST(InputsTest, RowOfAFertiliser)
{
    test::MachineLocale comma(test::commaLocale());
    const Fertilizante f{"05", "20", "20", "Fórmula", "450,5", "---", "---", "---", "---"};
    const QVariantList row = linhaFertilizante(f, 5.5f);
    ASSERT_EQ(row.size(), 12);
    EXPECT_EQ(row[0].toString(), QStringLiteral("05-20-20"));
    EXPECT_EQ(row[3].toFloat(), 20.0f);
    EXPECT_EQ(row[5].toFloat(), 1.0f);
    EXPECT_DOUBLE_EQ(row[7].toDouble(), 450.5 * 5.5);
    EXPECT_EQ(row[11].toString(), QStringLiteral("---"));

    // No division when K is 0, whatever P is.
    for (const char* p : {"0", "18"}) {
        const QVariantList noK = linhaFertilizante({"0", QString::fromLatin1(p), "0", "Fonte", "300", "---", "---", "---", "---"}, 5.5f);
        EXPECT_EQ(noK[5].typeId(), QMetaType::Int);
        EXPECT_EQ(noK[5].toInt(), 0);
    }
}

// A quotation reprices every row over the fixed rate, or, failing half-way, leaves every price as it was.
TEST(InputsTest, QuotationRepricesEveryRowOrNone)
{
    test::ScratchDatabase scratch;
    scratch.exec(QStringLiteral("DELETE FROM Calcario"));
    scratch.exec(QStringLiteral("DELETE FROM NPK"));
    scratch.exec(QStringLiteral("INSERT INTO Calcario VALUES ('Calcítico', 80, 100, 157), ('Filler', 95, 33, 181.5)"));
    scratch.exec(QStringLiteral("INSERT INTO NPK (\"Fórmula\", \"US$/t\", \"R$/t\") VALUES ('05-20-20', 400, 2200)"));
    const auto preco = [&scratch](const char* where) {
        return scratch.scalar(QStringLiteral("SELECT \"R$/t\" FROM %1").arg(QString::fromUtf8(where))).toDouble();
    };
    Store db(scratch.path());
    EXPECT_DOUBLE_EQ(linhaCorretivo(QStringLiteral("Calcítico"), QStringLiteral("80"), QStringLiteral("100"))[3].toDouble(),
                     157.0);

    scratch.exec(QStringLiteral("CREATE TRIGGER falha BEFORE UPDATE ON NPK BEGIN SELECT RAISE(ABORT, 'disco cheio'); END"));
    EXPECT_ANY_THROW(AtualizaCotacao(db, 6.0f));
    EXPECT_DOUBLE_EQ(scratch.scalar(QStringLiteral("SELECT Cotacao FROM CotDolar")).toDouble(), 5.5);
    EXPECT_DOUBLE_EQ(preco("Calcario WHERE Nome='Calcítico'"), 157.0);
    EXPECT_FALSE(db.cn.isOpen());

    scratch.exec(QStringLiteral("DROP TRIGGER falha"));
    AtualizaCotacao(db, 5.45f);
    EXPECT_EQ(LeCotacao(db), 5.45f);
    EXPECT_DOUBLE_EQ(preco("Calcario WHERE Nome='Calcítico'"), 545.0);
    EXPECT_DOUBLE_EQ(preco("Calcario WHERE Nome='Filler'"), 179.85);
    EXPECT_DOUBLE_EQ(preco("NPK"), 2180.0);
    EXPECT_FALSE(db.cn.isOpen());
}

} // namespace
