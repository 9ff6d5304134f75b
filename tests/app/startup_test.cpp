#include "app/startup.h"
#include "store/databasefile.h"
#include "store/storeerror.h"
#include "testsupport.h"

#include <QSqlQuery>
#include <gtest/gtest.h>

using namespace lavra;

namespace {

class TecnicoTest : public ::testing::Test {
protected:
    test::ScratchDatabase scratch;
    Session session{scratch.path()};

    void addTecnico(const QString& nome, int assina)
    {
        scratch.exec(QStringLiteral("INSERT INTO TecResp VALUES ('%1', 'Engenheiro Agrônomo', 'RS-%2', %3)")
                         .arg(nome).arg(nome.size()).arg(assina));
    }
};

// An empty table is told; rows without the mark say nothing; the first marked row wins.
TEST_F(TecnicoTest, FirstMarkedRowWinsAndOnlyAnEmptyTableIsTold)
{
    EXPECT_TRUE(CarregaTecnico(session));
    EXPECT_FALSE(session.db.cn.isOpen());
    addTecnico(QStringLiteral("Ana"), 0);
    EXPECT_FALSE(CarregaTecnico(session));
    EXPECT_TRUE(session.NomeTec.isEmpty() && session.CreaTec.isEmpty());
    addTecnico(QStringLiteral("Bruno"), 1);
    addTecnico(QStringLiteral("Carla"), 1);
    EXPECT_FALSE(CarregaTecnico(session));
    EXPECT_EQ(session.NomeTec, QStringLiteral("Bruno"));
    EXPECT_EQ(session.ProfTec, QStringLiteral("Engenheiro Agrônomo"));
    EXPECT_EQ(session.CreaTec, QStringLiteral("RS-5"));
}

class NpkUpgradeTest : public ::testing::Test {
protected:
    test::ScratchDatabase scratch;
    Store db{scratch.path()};

    QStringList declared() const
    {
        auto file = DatabaseFile::acquire(scratch.path());
        QSqlQuery query(file->database());
        query.exec(QStringLiteral("PRAGMA table_info(NPK)"));
        QStringList columns;
        while (query.next())
            columns << query.value(1).toString() + QLatin1Char(' ') + query.value(2).toString();
        return columns;
    }

    void makeOldLayout(int extraColumns)
    {
        scratch.exec(QStringLiteral("DROP TABLE NPK"));
        QString create = QStringLiteral(
            "CREATE TABLE NPK (\"Fórmula\" TEXT(255), \"Especificação\" TEXT(255), N DOUBLE, P DOUBLE, "
            "K DOUBLE, \"P/K\" SINGLE, \"US$/t\" SINGLE, \"R$/t\" SINGLE");
        for (int i = 0; i < extraColumns; ++i)
            create += QStringLiteral(", Extra%1 TEXT(40)").arg(i);
        scratch.exec(create + QLatin1Char(')'));
        const QString extras = QString(QStringLiteral(", 'x'")).repeated(extraColumns);
        scratch.exec(QStringLiteral("INSERT INTO NPK VALUES ('05-20-20', 'Fórmula', 5, 20, 20, 1, 400, 2200%1)").arg(extras));
        scratch.exec(QStringLiteral("INSERT INTO NPK VALUES ('45-00-00', 'Ureia', 45.1, 0, 0, 0, 500, 2750%1)").arg(extras));
    }
};

TEST_F(NpkUpgradeTest, EightColumnsGainFourMarkedColumnsAndSingleNutrients)
{
    makeOldLayout(0);
    EXPECT_TRUE(AtualizaNPK(db));

    const QStringList columns = declared();
    ASSERT_EQ(columns.size(), 12);
    EXPECT_EQ(columns.mid(2, 3), (QStringList{"N SINGLE", "P SINGLE", "K SINGLE"}));
    EXPECT_EQ(columns.mid(8), (QStringList{"MS TEXT(40)", "EFICN TEXT(40)", "EFICP TEXT(40)", "EFICK TEXT(40)"}));

    db.AbreTabela(QStringLiteral("SELECT * FROM NPK;"));
    ASSERT_EQ(db.rs.recordCount(), 2);
    db.rs.moveLast();
    EXPECT_EQ(db.rs.value(1).toString(), QStringLiteral("Ureia"));
    EXPECT_EQ(db.rs.value(2).toFloat(), 45.1f);
    EXPECT_EQ(db.rs.value(7).toFloat(), 2750.0f);
    for (int ordinal = 8; ordinal <= 11; ++ordinal)
        EXPECT_EQ(db.rs.value(ordinal).toString(), QStringLiteral("---"));
    db.fecha();

    EXPECT_FALSE(AtualizaNPK(db));  // once only
}

TEST_F(NpkUpgradeTest, NineColumnsAreUpgradedTenAreLeftAlone)
{
    makeOldLayout(1);
    EXPECT_TRUE(AtualizaNPK(db));
    EXPECT_EQ(declared().size(), 13);

    makeOldLayout(2);
    EXPECT_FALSE(AtualizaNPK(db));
    EXPECT_EQ(declared().size(), 10);
    EXPECT_EQ(declared()[2], QStringLiteral("N DOUBLE"));
}

TEST_F(NpkUpgradeTest, FailureLeavesTheOldTableAsItWas)
{
    makeOldLayout(0);
    // A column of that name already there makes the second addition fail half-way.
    scratch.exec(QStringLiteral("ALTER TABLE NPK RENAME COLUMN \"R$/t\" TO EFICN"));
    EXPECT_THROW(AtualizaNPK(db), StoreError);
    EXPECT_EQ(declared().size(), 8);
    EXPECT_EQ(declared()[2], QStringLiteral("N DOUBLE"));
    EXPECT_FALSE(db.cn.isOpen());
}

} // namespace
