#include "app/startup.h"
#include "store/database.h"
#include "store/databasefile.h"
#include "store/schema.h"
#include "store/store.h"
#include "store/storeerror.h"
#include "testsupport.h"

#include <QFile>
#include <QFileInfo>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <functional>
#include <gtest/gtest.h>

using namespace lavra;

namespace {

QStringList columnsOf(const test::ScratchDatabase& scratch, const QString& table)
{
    Connection connection(scratch.path());
    connection.open();
    QSqlQuery query(connection.database());
    query.exec(QStringLiteral("PRAGMA table_info(%1)").arg(quoteIdentifier(table)));
    QStringList columns;
    while (query.next())
        columns << query.value(1).toString() + QLatin1Char(' ') + query.value(2).toString();
    return columns;
}

TEST(DatabaseTest, NewDatabaseHoldsEveryTableInSchemaOrder)
{
    test::ScratchDatabase scratch;
    const QMap<QString, int> counts = {{"Analises", 36}, {"NPK", 12},        {"Calcario", 4},
                                       {"CotDolar", 1},  {"Empresa", 10},    {"TecResp", 4},
                                       {"Clientes", 5},  {"RecoForm", 44},   {"RecoFormulac", 62},
                                       {"RecoFlorest", 31}, {"FLOREST", 35}, {"Graf", 4}};
    for (auto it = counts.begin(); it != counts.end(); ++it)
        EXPECT_EQ(columnsOf(scratch, it.key()).size(), it.value()) << it.key().toStdString();

    for (const TableDef& table : schema::tables()) {
        const QStringList columns = columnsOf(scratch, table.name);
        ASSERT_EQ(columns.size(), table.columns.size()) << table.name.toStdString();
        for (int i = 0; i < columns.size(); ++i)
            EXPECT_EQ(columns[i], table.columns[i].name + QLatin1Char(' ') + schema::declaredType(table.columns[i]));
    }
    EXPECT_EQ(columnsOf(scratch, QStringLiteral("Analises")).at(0), QStringLiteral("Código TEXT(255)"));
    EXPECT_EQ(columnsOf(scratch, QStringLiteral("NPK")).at(8), QStringLiteral("MS TEXT(40)"));
    EXPECT_EQ(columnsOf(scratch, QStringLiteral("RecoForm")).at(41), QStringLiteral("CustoTotal DOUBLE"));
    EXPECT_EQ(scratch.scalar(QStringLiteral("PRAGMA user_version")).toInt(), schema::kVersion);
}

TEST(DatabaseTest, MedicinalTablesAnswerUnderEverySuffix)
{
    test::ScratchDatabase scratch;
    scratch.exec(QStringLiteral("INSERT INTO CONDMEDK VALUES ('Planta de teste', 60, 40, 20)"));
    Store db(scratch.path());
    for (const char* suffix : {"", "1", "2"}) {
        db.AbreTabela(QStringLiteral("SELECT * FROM CONDMEDK%1;").arg(QString::fromLatin1(suffix)));
        db.rs.moveLast();
        EXPECT_EQ(db.rs.value(0).toString(), QStringLiteral("Planta de teste"));
        EXPECT_EQ(db.rs.value(1).toFloat(), 60.0f);
    }
    db.fecha();
}

void writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

class SeedTest : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QString dataDir() const { return dir.filePath(QStringLiteral("data")); }
    QString target() const { return dir.filePath(QStringLiteral("Lavra.db")); }

    void writeFile(const QString& name, const QByteArray& content)
    {
        QDir().mkpath(dataDir());
        writeBytes(QDir(dataDir()).filePath(name), content);
    }
};

TEST_F(SeedTest, RowsAreLoadedByHeadingWithNotesPassedOver)
{
    writeFile(QStringLiteral("Calcario.csv"),
              "Nome,PRNT,US$/t,R$/t,source,confidence\n"
              "\"Calcário dolomítico, fino\",75.5,40,220,\"recalled, 2004\",medium\n"
              "Filler,95,70,385,x,high\n");
    database::create(target(), dataDir());
    Store db(target());
    db.AbreTabela(QStringLiteral("SELECT * FROM Calcario;"));
    ASSERT_EQ(db.rs.recordCount(), 2);
    EXPECT_EQ(db.rs.value(0).toString(), QStringLiteral("Calcário dolomítico, fino"));
    EXPECT_EQ(db.rs.value(1).toFloat(), 75.5f);
    EXPECT_EQ(db.rs.value(3).toDouble(), 220.0);
    db.fecha();
}

// A fault half-way (a word for a number, an unknown column) leaves no database behind.
TEST_F(SeedTest, AFaultHalfWayLeavesNoDatabaseBehind)
{
    writeFile(QStringLiteral("Calcario.csv"), "Nome,PRNT,US$/t,R$/t\nFiller,95,70,385\n");
    for (const QByteArray& npk : {QByteArray("Fórmula,N\n05-20-20,cinco\n"), QByteArray("Fórmula,Pureza\nX,95\n")}) {
        writeFile(QStringLiteral("NPK.csv"), npk);
        EXPECT_THROW(database::create(target(), dataDir()), StoreError);
        EXPECT_FALSE(QFileInfo::exists(target()));
        EXPECT_FALSE(QFileInfo::exists(target() + QStringLiteral(".novo")));
    }
}

// What a user may find at the place of Lavra.db, and what start makes of it.
struct FoundFile {
    const char* what;
    std::function<void(const QString& path)> make;
    const char* refusal;  // empty: the program starts on a complete database
};

void withoutTables(const QString& path, const QStringList& tables)
{
    database::create(path);
    Connection connection(path);
    connection.open();
    for (const QString& table : tables)
        connection.execute(QStringLiteral("DROP TABLE %1").arg(quoteIdentifier(table)));
    connection.close();
}

void PrintTo(const FoundFile& found, std::ostream* os) { *os << found.what; }

class FoundFileTest : public ::testing::TestWithParam<FoundFile> {};

TEST_P(FoundFileTest, StartCreatesOrRefusesWithOneMessage)
{
    const FoundFile& found = GetParam();
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("Lavra.db"));
    if (found.make)
        found.make(path);
    QByteArray before;
    if (QFile file(path); file.open(QIODevice::ReadOnly))
        before = file.readAll();

    Session session;
    const QString refusal = QString::fromUtf8(found.refusal);
    if (refusal.isEmpty()) {
        ASSERT_NO_THROW(AbreBanco(session, path)) << found.what;
        EXPECT_EQ(session.db.strConn, path);
        EXPECT_NO_THROW(database::check(path));
        Store db(path);
        db.AbreTabela(QStringLiteral("SELECT * FROM CotDolar"));
        EXPECT_EQ(db.rs.recordCount(), 1) << "the starting rows are there";
        db.fecha();
        return;
    }
    try {
        AbreBanco(session, path);
        ADD_FAILURE() << found.what << " was taken for a database";
    } catch (const StoreError& error) {
        EXPECT_TRUE(error.message().contains(refusal)) << error.message().toStdString();
        // Always what to do about it.
        EXPECT_TRUE(error.message().contains(QStringLiteral("Restaure uma cópia de segurança do Lavra.db")));
        EXPECT_TRUE(error.message().contains(QStringLiteral("mova este arquivo para outra pasta")));
    }
    // The user's file is never replaced.
    QFile after(path);
    ASSERT_TRUE(after.open(QIODevice::ReadOnly));
    EXPECT_EQ(after.readAll(), before) << found.what;
}

INSTANTIATE_TEST_SUITE_P(
    Start, FoundFileTest,
    ::testing::Values(
        FoundFile{"no file", {}, ""},
        FoundFile{"an empty file", [](const QString& p) { writeBytes(p, {}); }, ""},
        FoundFile{"a text file", [](const QString& p) { writeBytes(p, QByteArray("Lavra.db\n").repeated(500)); },
                  "não é um banco de dados do Lavra"},
        FoundFile{"a half-copied database",
                  [](const QString& p) {
                      database::create(p);
                      QFile file(p);
                      ASSERT_TRUE(file.open(QIODevice::ReadWrite));
                      const QByteArray head = file.read(50);
                      file.resize(0);
                      file.write(head + QByteArray(4046, '\xff'));
                  },
                  "não é um banco de dados do Lavra"},
        FoundFile{"a database without one table",
                  [](const QString& p) { withoutTables(p, {QStringLiteral("Graf")}); }, "Falta a tabela Graf."},
        FoundFile{"a database of another program",
                  [](const QString& p) {
                      writeBytes(p, {});
                      DatabaseFile::acquire(p)->run(QStringLiteral("CREATE TABLE Notas (Texto TEXT)"));
                  },
                  "O banco de dados está incompleto. Faltam"}));

} // namespace
