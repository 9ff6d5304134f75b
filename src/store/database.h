#pragma once

#include "connection.h"
#include "schema.h"

#include <QList>
#include <QString>
#include <QVariant>
#include <QVector>

namespace lavra::database {

// Makes a complete new database at path: every table and its starting rows, read from the data
// files in dataDir. The file appears only when all of it is written, so a failure half-way leaves
// no database behind. Throws StoreError.
void create(const QString& path, const QString& dataDir = QStringLiteral(":/data"));

// Creates every table and alias of the schema on an open connection.
void createSchema(Connection& connection);

// Adds the rows of every "<table>.csv" in dataDir; numbers are written with a decimal point.
// Columns named "source" or "confidence" are notes on the rows, not data, and are passed over.
void loadStartingRows(Connection& connection, const QString& dataDir);

// The rows of a data file of a table, each as wide as the table, with its notes.
struct StartingRow {
    QVector<QVariant> values; // as the columns keep them; null where the file has no field
    QString source;
    QString confidence;
};
struct StartingRows {
    QList<int> columns; // the table's columns the file fills, in file order
    QList<StartingRow> rows;
};
// Throws StoreError for a file that cannot be read, a heading that names no column or note, a
// row of another width, or a field its column cannot hold.
StartingRows readStartingRows(const TableDef& table, const QString& fileName);

// The schema version written in the file; 0 for a file made before versions were kept.
int schemaVersion(Connection& connection);

// Brings a file of an older schema version up to this one, step by step, in one transaction.
// Throws StoreError with the file as it was.
void upgrade(Connection& connection);
// The same on the file at path; a file that cannot be written is left as it is.
void upgrade(const QString& path);

// The tables and aliases of the schema that the open file lacks, in schema order. Throws
// StoreError when the file cannot be read as a database.
QStringList missingTables(Connection& connection);

// Makes sure the file at path can be worked on: a database that holds every table of the
// schema. Otherwise throws StoreError with one message that says what is wrong and what to do.
void check(const QString& path);

} // namespace lavra::database
