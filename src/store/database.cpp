#include "database.h"

#include "base/numbers.h"
#include "csv.h"
#include "databasefile.h"
#include "errortext.h"
#include "manualtables.h"
#include "schema.h"
#include "storeerror.h"

#include <algorithm>

#include <QDate>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QSqlError>
#include <QSqlQuery>

namespace lavra::database {

namespace {

const QStringList kNoteColumns = {QStringLiteral("source"), QStringLiteral("confidence")};

// A field of a data file as the column keeps it: numbers written with a decimal point, dates in
// ISO form, an empty field as null.
QVariant startingValue(const QString& text, ColumnType type, const QString& where)
{
    if (text.isEmpty())
        return {};
    bool ok = true;
    QVariant value;
    switch (type) {
    case ColumnType::Text: return text;
    case ColumnType::Date: {
        const QDate date = QDate::fromString(text, Qt::ISODate);
        ok = date.isValid();
        value = date.toString(Qt::ISODate);
        break;
    }
    case ColumnType::SmallInt:
    case ColumnType::Long: value = text.toLongLong(&ok); break;
    case ColumnType::Single: {
        const float f = text.toFloat(&ok);
        value = widenShortest(f);
        break;
    }
    case ColumnType::Double:
    case ColumnType::Currency: value = text.toDouble(&ok); break;
    }
    if (!ok)
        throw StoreError(QStringLiteral("Valor inválido '%1' em %2.").arg(text, where));
    return value;
}

} // namespace

StartingRows readStartingRows(const TableDef& table, const QString& fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        throw StoreError(QStringLiteral("Não foi possível ler o arquivo de dados '%1'.").arg(fileName));
    const QList<QStringList> records = parseCsv(QString::fromUtf8(file.readAll()));
    StartingRows result;
    if (records.isEmpty())
        return result;

    // Map each heading to its column; every heading must name a column or a note.
    const QStringList header = records.first();
    QList<int> columnOf;
    for (const QString& heading : header) {
        int index = -1;
        for (int c = 0; c < table.columns.size(); ++c) {
            if (table.columns[c].name == heading.trimmed())
                index = c;
        }
        if (index < 0 && !kNoteColumns.contains(heading.trimmed()))
            throw StoreError(QStringLiteral("A coluna '%1' do arquivo '%2' não existe na tabela %3.")
                                 .arg(heading, fileName, table.name));
        columnOf << index;
        if (index >= 0)
            result.columns << index;
    }
    const qsizetype source = header.indexOf(kNoteColumns[0]);
    const qsizetype confidence = header.indexOf(kNoteColumns[1]);

    for (int r = 1; r < records.size(); ++r) {
        const QStringList& record = records[r];
        if (record.size() != header.size())
            throw StoreError(QStringLiteral("A linha %1 do arquivo '%2' tem %3 campos; o cabeçalho tem %4.")
                                 .arg(r + 1).arg(fileName).arg(record.size()).arg(header.size()));
        StartingRow row;
        row.values.resize(table.columns.size());
        const QString where = QStringLiteral("%1, linha %2").arg(fileName).arg(r + 1);
        for (int f = 0; f < record.size(); ++f) {
            if (columnOf[f] >= 0)
                row.values[columnOf[f]] = startingValue(record[f], table.columns[columnOf[f]].type, where);
        }
        row.source = record.value(source);
        row.confidence = record.value(confidence);
        result.rows << row;
    }
    return result;
}

namespace {

void loadTable(Connection& connection, const TableDef& table, const QString& fileName)
{
    const StartingRows starting = readStartingRows(table, fileName);
    QStringList names;
    for (int c : starting.columns)
        names << quoteIdentifier(table.columns[c].name);
    if (names.isEmpty())
        return;
    QSqlQuery insert(connection.database());
    insert.prepare(QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                       .arg(quoteIdentifier(table.name), names.join(QStringLiteral(", ")),
                            QStringList(names.size(), QStringLiteral("?")).join(QStringLiteral(", "))));
    for (const StartingRow& row : starting.rows) {
        for (int c : starting.columns)
            insert.addBindValue(row.values[c]);
        if (!insert.exec())
            throw engineError(insert.lastError(), StoreError::Access::Write);
    }
}

} // namespace

void createSchema(Connection& connection)
{
    for (const TableDef& table : schema::tables())
        connection.execute(schema::createStatement(table));
    for (const ViewDef& view : schema::views())
        connection.execute(QStringLiteral("CREATE VIEW %1 AS SELECT * FROM %2")
                               .arg(quoteIdentifier(view.name), quoteIdentifier(view.table)));
    for (const IndexDef& index : schema::indexes())
        connection.execute(schema::createIndexStatement(index));
    connection.execute(QStringLiteral("PRAGMA user_version = %1").arg(schema::kVersion));
}

void loadStartingRows(Connection& connection, const QString& dataDir)
{
    const QDir dir(dataDir);
    const QStringList files = dir.entryList({QStringLiteral("*.csv")}, QDir::Files, QDir::Name);
    for (const QString& fileName : files) {
        const QString tableName = QFileInfo(fileName).completeBaseName();
        const TableDef* table = schema::findTable(tableName);
        if (!table)
            throw StoreError(QStringLiteral("O arquivo de dados '%1' não corresponde a nenhuma tabela.").arg(fileName));
        loadTable(connection, *table, dir.filePath(fileName));
    }
}

int schemaVersion(Connection& connection)
{
    QSqlQuery query(connection.database());
    if (!query.exec(QStringLiteral("PRAGMA user_version")) || !query.next())
        throw engineError(query.lastError(), StoreError::Access::Read);
    return query.value(0).toInt();
}

QStringList missingTables(Connection& connection)
{
    QSqlQuery query(connection.database());
    query.setForwardOnly(true);
    if (!query.exec(QStringLiteral("SELECT name FROM sqlite_master WHERE type IN ('table', 'view')")))
        throw engineError(query.lastError(), StoreError::Access::Read);
    QSet<QString> present;
    while (query.next())
        present.insert(query.value(0).toString().toLower());
    if (query.lastError().isValid())
        throw engineError(query.lastError(), StoreError::Access::Read);

    // A table newer than the file is made by the upgrade, not missing.
    const int version = schemaVersion(connection);
    QStringList missing;
    for (const TableDef& table : schema::tables()) {
        if (table.since <= std::max(version, 1) && !present.contains(table.name.toLower()))
            missing << table.name;
    }
    for (const ViewDef& view : schema::views()) {
        if (!present.contains(view.name.toLower()))
            missing << view.name;
    }
    return missing;
}

void check(const QString& path)
{
    static const QString whatToDo = QStringLiteral(
        "Restaure uma cópia de segurança do Lavra.db nesta pasta, ou mova este arquivo para outra pasta para que o "
        "programa crie um banco de dados novo, sem os cadastros.");
    QStringList missing;
    try {
        Connection connection(path);
        connection.open();
        missing = missingTables(connection);
        connection.close();
    } catch (const StoreError& error) {
        // A file that is held or cannot be opened is told in the engine's plain words; only a
        // damaged one calls for a copy.
        if (engineFailure(-1, error.detail()) != EngineFailure::Damaged)
            throw;
        throw StoreError(QStringLiteral("O arquivo não é um banco de dados do Lavra, ou está danificado.\n") + whatToDo,
                         error.detail(), StoreError::Access::Read);
    }
    if (missing.isEmpty())
        return;
    const int total = static_cast<int>(schema::tables().size() + schema::views().size());
    QString which;
    if (missing.size() == 1)
        which = QStringLiteral("Falta a tabela %1.").arg(missing.first());
    else if (missing.size() <= 5)
        which = QStringLiteral("Faltam as tabelas %1.").arg(missing.join(QStringLiteral(", ")));
    else
        which = QStringLiteral("Faltam %1 das %2 tabelas.").arg(missing.size()).arg(total);
    throw StoreError(QStringLiteral("O banco de dados está incompleto. %1\n").arg(which) + whatToDo);
}

void upgrade(Connection& connection)
{
    const int version = schemaVersion(connection);
    if (version >= schema::kVersion)
        return;
    Transaction transaction(connection);
    for (int step = version + 1; step <= schema::kVersion; ++step) {
        for (const QString& statement : schema::upgradeStatements(step))
            connection.execute(statement);
    }
    connection.execute(QStringLiteral("PRAGMA user_version = %1").arg(schema::kVersion));
    transaction.commit();
}

void upgrade(const QString& path)
{
    Connection connection(path);
    connection.open();
    try {
        upgrade(connection);
    } catch (const StoreError& error) {
        // A file that cannot be written, such as a copy on a read-only disk, is still worked on,
        // only without the newer steps; anything else is a real failure.
        if (!error.stoppedWrite())
            throw;
    }
    connection.close();
}

void create(const QString& path, const QString& dataDir)
{
    const QString partial = path + QStringLiteral(".novo");
    QFile::remove(partial);
    {
        QFile touch(partial);
        if (!touch.open(QIODevice::WriteOnly))
            throw StoreError(QStringLiteral("Não foi possível criar o arquivo '%1': %2").arg(partial, touch.errorString()));
    }
    try {
        Connection connection(partial);
        connection.open();
        Transaction transaction(connection);
        createSchema(connection);
        loadStartingRows(connection, dataDir);
        manual::registraVersaoDados(connection);
        transaction.commit();
        connection.close();
    } catch (...) {
        QFile::remove(partial);
        throw;
    }
    if (!QFile::rename(partial, path)) {
        QFile::remove(partial);
        throw StoreError(QStringLiteral("Não foi possível criar o arquivo '%1'.").arg(path));
    }
}

} // namespace lavra::database
