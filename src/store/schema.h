#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace lavra {

// Declared kinds of column. The code of each is the one the query tool groups by.
enum class ColumnType {
    SmallInt = 2,  // 16-bit integer
    Long = 3,      // 32-bit integer
    Single = 4,    // 32-bit float
    Double = 5,    // 64-bit float
    Currency = 6,
    Date = 7,
    Text = 202,
};

struct ColumnDef {
    QString name;
    ColumnType type = ColumnType::Text;
    int width = 255;              // text only; 0 means no limit
    QString defaultValue = {};    // SQL literal, empty for none
};

struct TableDef {
    QString name;
    QList<ColumnDef> columns;
    int since = 1; // the schema version that brought the table
};

// An index on columns that rows are found by. Keys compare byte by byte, so the index does too,
// whatever the columns' own collation.
struct IndexDef {
    QString table;
    QStringList columns;
};

// A read-only alias: the named view shows every row of another table.
struct ViewDef {
    QString name;
    QString table;
};

namespace schema {

const QList<TableDef>& tables();
const QList<ViewDef>& views();
const TableDef* findTable(const QString& name);

// Declared type as written in the database, e.g. "SINGLE" or "TEXT(40)".
QString declaredType(const ColumnDef& column);
// Reads a declared type back; unknown names count as text.
ColumnType typeFromDeclared(const QString& declared);

// "CREATE TABLE ..." for one table.
QString createStatement(const TableDef& table);

// The indexes, in creation order.
const QList<IndexDef>& indexes();
// "CREATE INDEX IF NOT EXISTS ..." for one index.
QString createIndexStatement(const IndexDef& index);

// The schema version kept in the database file; raised with every upgrade step.
inline constexpr int kVersion = 3;

// The statements that take a file from the version before to this one; the step to version 1 is
// empty, as files older than versions already had every table. Version 2 brought the indexes,
// version 3 the history of the manual's tables.
QStringList upgradeStatements(int toVersion);

} // namespace schema

// Quotes an identifier so that accents, blanks, '/' and '$' survive.
QString quoteIdentifier(const QString& name);
// The name inside [brackets] or "quotes"; any other text as it stands.
QString unquoteIdentifier(const QString& identifier);
// Quotes a text as an SQL literal, doubling any quotation mark inside it.
QString sqlText(const QString& text);

} // namespace lavra
