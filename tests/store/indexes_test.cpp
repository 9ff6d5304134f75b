#include "app/startup.h"
#include "registers/analysis.h"
#include "store/database.h"
#include "store/databasefile.h"
#include "store/query.h"
#include "store/schema.h"
#include "testsupport.h"

#include <QSqlQuery>

#include <gtest/gtest.h>

using namespace lavra;

namespace {

QString indexName(const IndexDef& index)
{
    return QStringLiteral("ix_%1_%2").arg(index.table, index.columns.join(QLatin1Char('_')));
}

QStringList indexesIn(const test::ScratchDatabase& scratch)
{
    auto file = DatabaseFile::acquire(scratch.path());
    QSqlQuery query(file->database());
    query.exec(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'index' AND name LIKE 'ix_%' ORDER BY name"));
    QStringList names;
    while (query.next())
        names << query.value(0).toString();
    return names;
}

// What the engine says it will do, one step a line.
QString plan(const test::ScratchDatabase& scratch, const QString& sql)
{
    auto file = DatabaseFile::acquire(scratch.path());
    QSqlQuery query(file->database());
    query.prepare(QStringLiteral("EXPLAIN QUERY PLAN ") + sql);
    for (int i = 0; i < sql.count(QLatin1Char('?')); ++i)
        query.addBindValue(QStringLiteral("x"));
    EXPECT_TRUE(query.exec()) << sql.toStdString();
    QStringList steps;
    while (query.next())
        steps << query.value(3).toString();
    return steps.join(QLatin1Char('\n'));
}

QStringList expectedIndexes()
{
    QStringList names;
    for (const IndexDef& index : schema::indexes())
        names << indexName(index);
    names.sort();
    return names;
}

TEST(IndexesTest, EveryKeyOfTheRegistersAndOfTheManualIsIndexed)
{
    const QStringList names = expectedIndexes();
    for (const char* name : {"ix_Clientes_Nome", "ix_Analises_Código", "ix_Analises_Cliente",
                             "ix_RecoForm_CodAnalise_CodCultivo", "ix_RecoFormulac_CodAnalise_CodCultivo",
                             "ix_RecoFlorest_CodAnalise_CodCultivo", "ix_GRAON_Chave", "ix_FLOREST_Chave",
                             "ix_CONDMEDK_Chave"})
        EXPECT_TRUE(names.contains(QString::fromUtf8(name))) << name;
    test::ScratchDatabase scratch;
    EXPECT_EQ(indexesIn(scratch), names);
}

TEST(IndexesTest, AVersionOneFileGetsTheIndexesAtStartAndKeepsItsRows)
{
    test::ScratchDatabase scratch;
    for (const IndexDef& index : schema::indexes())
        scratch.exec(QStringLiteral("DROP INDEX %1").arg(quoteIdentifier(indexName(index))));
    scratch.exec(QStringLiteral("PRAGMA user_version = 1"));
    scratch.exec(QStringLiteral("INSERT INTO Clientes (Nome) VALUES ('Ana Souza')"));
    ASSERT_TRUE(indexesIn(scratch).isEmpty());

    Session session;
    AbreBanco(session, scratch.path());
    EXPECT_EQ(scratch.scalar(QStringLiteral("PRAGMA user_version")).toInt(), schema::kVersion);
    EXPECT_EQ(indexesIn(scratch), expectedIndexes());
    EXPECT_EQ(ClienteRegistrado(session.db, QStringLiteral(" Ana Souza")), QStringLiteral("Ana Souza"));

    // A file already at this version is left as it is.
    scratch.exec(QStringLiteral("DROP INDEX ix_Clientes_Nome"));
    AbreBanco(session, scratch.path());
    EXPECT_FALSE(indexesIn(scratch).contains(QStringLiteral("ix_Clientes_Nome")));
}

TEST(IndexesTest, KeyedLookupsGoThroughTheIndexes)
{
    test::ScratchDatabase scratch;
    // Each index answers the lookup by its columns in the form the keyed queries write it, and the
    // lookup that ignores case as well.
    for (const IndexDef& index : schema::indexes()) {
        for (const char* form : {"%1 = ? AND %1 = ? COLLATE BINARY", "%1 = ?"}) {
            QStringList keys;
            for (const QString& column : index.columns)
                keys << QString::fromLatin1(form).arg(quoteIdentifier(column));
            const QString sql = QStringLiteral("SELECT * FROM %1 WHERE %2 ORDER BY rowid LIMIT 1")
                                    .arg(quoteIdentifier(index.table), keys.join(QStringLiteral(" AND ")));
            EXPECT_TRUE(plan(scratch, sql).contains(indexName(index))) << sql.toStdString();
        }
    }
    // The saved recommendations of one analysis, by the first key alone.
    EXPECT_TRUE(plan(scratch, QStringLiteral("SELECT CodCultivo FROM RecoForm WHERE CodAnalise = ? AND CodAnalise = ? COLLATE BINARY"))
                    .contains(QStringLiteral("ix_RecoForm_CodAnalise_CodCultivo")));
    // The names of the clients that have analyses, read from the index alone.
    EXPECT_TRUE(plan(scratch, QStringLiteral("SELECT DISTINCT Cliente FROM Analises"))
                    .contains(QStringLiteral("COVERING INDEX ix_Analises_Cliente")));
}

TEST(IndexesTest, KeysMatchExactlyUnlessTheLookupIgnoresCase)
{
    test::ScratchDatabase scratch;
    scratch.exec(QStringLiteral("INSERT INTO Analises (\"Código\", Cliente) VALUES ('faz/G1/01/02/2026', 'Ana'), "
                                "('Faz/G1/01/02/2026', 'Ana'), (NULL, 'Ana')"));
    Store db(scratch.path());
    const QString codigo = QStringLiteral("Código");
    const auto exata = consulta::primeira(db, QStringLiteral("Analises"), {{codigo, QStringLiteral("Faz/G1/01/02/2026")}});
    ASSERT_TRUE(exata);
    EXPECT_EQ(exata->at(0).toString(), QStringLiteral("Faz/G1/01/02/2026"));
    // Ignoring case, the first row in table order answers.
    const auto semCaixa
        = consulta::primeira(db, QStringLiteral("Analises"), {{codigo, QStringLiteral("FAZ/g1/01/02/2026"), true}});
    ASSERT_TRUE(semCaixa);
    EXPECT_EQ(semCaixa->at(0).toString(), QStringLiteral("faz/G1/01/02/2026"));
    EXPECT_FALSE(consulta::existe(db, QStringLiteral("Analises"), {{codigo, QStringLiteral("FAZ/g1/01/02/2026")}}));
    EXPECT_FALSE(consulta::existe(db, QStringLiteral("Analises"), {{codigo, QString()}}));
    // A quote in a key is a character like any other.
    EXPECT_FALSE(consulta::existe(db, QStringLiteral("Analises"), {{codigo, QStringLiteral("x' OR '1'='1")}}));
}

} // namespace
