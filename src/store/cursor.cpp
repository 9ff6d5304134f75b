#include "connection.h"

#include "base/numbers.h"
#include "changenotifier.h"
#include "databasefile.h"
#include "storeerror.h"

#include <QDate>
#include <QRegularExpression>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

#include <algorithm>

namespace lavra {

namespace {

const QString kRowidAlias = QStringLiteral("__lavra_rowid");

// The one table a statement reads, when it reads exactly one; only such results can be edited.
QString singleSourceTable(const QString& sql)
{
    static const QRegularExpression from(
        QStringLiteral(R"(\bFROM\s+(\[[^\]]+\]|"[^"]+"|[^\s;,()]+)\s*(.*)$)"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression join(QStringLiteral(R"(^,|\bJOIN\b|\bUNION\b)"),
                                         QRegularExpression::CaseInsensitiveOption);
    const auto match = from.match(sql);
    if (!match.hasMatch() || join.match(match.captured(2)).hasMatch())
        return {};
    return unquoteIdentifier(match.captured(1));
}

} // namespace

QMap<QString, ColumnType> declaredTypes(const QSqlDatabase& db, const QString& table)
{
    QMap<QString, ColumnType> types;
    QSqlQuery query(db);
    if (query.exec(QStringLiteral("PRAGMA table_info(%1)").arg(quoteIdentifier(table)))) {
        while (query.next())
            types.insert(query.value(1).toString().toLower(), schema::typeFromDeclared(query.value(2).toString()));
    }
    return types;
}

QVariant toStorage(const QVariant& value, ColumnType type)
{
    if (value.isNull())
        return {};
    switch (type) {
    case ColumnType::Single:
        // Keep the float's shortest decimal form, so that the file reads as the user typed it.
        return widenShortest(value.toFloat());
    case ColumnType::Date: return value.toDate().toString(Qt::ISODate);
    case ColumnType::SmallInt:
    case ColumnType::Long: return value.toLongLong();
    case ColumnType::Double:
    case ColumnType::Currency: return value.toDouble();
    case ColumnType::Text: return value.toString();
    }
    return value;
}

// ---- Cursor ----

void Cursor::open(const QString& sql, const Connection& connection) { open(sql, {}, connection); }

void Cursor::open(const QString& sql, const QVariantList& values, const Connection& connection)
{
    if (!connection.isOpen())
        throw StoreError(QStringLiteral("A conexão não está aberta."));
    *this = Cursor();
    auto file = connection.file();
    QSqlDatabase db = file->database();
    const QString table = singleSourceTable(sql);

    static const QRegularExpression select(QStringLiteral(R"(^\s*SELECT\s+)"), QRegularExpression::CaseInsensitiveOption);
    // Values are bound, never pasted into the text, so that no quote or '%' in them counts.
    const auto run = [&values](QSqlQuery& query, const QString& statement) {
        if (!query.prepare(statement))
            return false;
        for (const QVariant& value : values)
            query.addBindValue(value);
        return query.exec();
    };
    QSqlQuery query(db);
    query.setForwardOnly(true);
    bool withRowid = false;
    if (!table.isEmpty() && select.match(sql).hasMatch()) {
        QString editable = sql;
        editable.replace(select, QStringLiteral("SELECT rowid AS %1, ").arg(kRowidAlias));
        withRowid = run(query, editable);
        // Only a statement the engine refused as written is worth a second try: a file that is
        // held, damaged or missing would refuse it again, after a second wait.
        if (!withRowid && query.lastError().nativeErrorCode() != QLatin1String("1"))
            throw engineError(query.lastError(), StoreError::Access::Read);
    }
    if (!withRowid) {
        // A view, or a statement over more than one table: readable, not editable.
        query = QSqlQuery(db);
        query.setForwardOnly(true);
        if (!run(query, sql))
            throw engineError(query.lastError(), StoreError::Access::Read);
    }

    const QSqlRecord record = query.record();
    const auto types = table.isEmpty() ? QMap<QString, ColumnType>() : declaredTypes(db, table);
    const int first = withRowid ? 1 : 0;
    for (int i = first; i < record.count(); ++i)
        m_columns.append({record.fieldName(i), types.value(record.fieldName(i).toLower(), ColumnType::Text)});

    while (query.next()) {
        Row row;
        row.rowid = withRowid ? query.value(0).toLongLong() : -1;
        row.values.reserve(m_columns.size());
        for (int i = 0; i < m_columns.size(); ++i)
            row.values.append(fromStorage(query.value(i + first), m_columns[i].type));
        row.changed.fill(false, m_columns.size());
        m_rows.append(std::move(row));
    }
    // A damaged page further on ends the walk early; that is a failure, not a shorter table.
    if (query.lastError().isValid())
        throw engineError(query.lastError(), StoreError::Access::Read);
    query.finish();

    m_file = std::move(file);
    m_table = table;
    m_updatable = withRowid;
    m_position = m_rows.isEmpty() ? -1 : 0;
}

QVariant fromStorage(const QVariant& stored, ColumnType type)
{
    if (stored.isNull())
        return {};
    switch (type) {
    case ColumnType::Text:
        return stored.typeId() == QMetaType::QString ? stored : QVariant(variantNumberText(stored));
    case ColumnType::Date: {
        const QDate date = QDate::fromString(stored.toString().left(10), Qt::ISODate);
        return date.isValid() ? QVariant(date) : stored;
    }
    default: break;
    }
    if (stored.typeId() == QMetaType::QString)
        return stored;  // a text that an older file kept in a numeric column
    switch (type) {
    case ColumnType::Single: return QVariant(toSingle(stored.toDouble()));
    case ColumnType::SmallInt:
    case ColumnType::Long: return QVariant(static_cast<int>(stored.toLongLong()));
    default: return QVariant(stored.toDouble());
    }
}

void Cursor::close()
{
    requireOpen();
    struct Reset {
        Cursor* cursor;
        ~Reset() { *cursor = Cursor(); }
    } reset{this};
    saveIfEditing();
}

void Cursor::requireOpen() const
{
    if (!m_file)
        throw StoreError(QStringLiteral("A operação não é permitida: o conjunto de registros está fechado."));
}

void Cursor::requireCurrent() const
{
    requireOpen();
    if (m_position < 0 || m_position >= recordCount())
        throw StoreError(QStringLiteral("Não há registro atual: o cursor está no início ou no fim."));
}

void Cursor::requireUpdatable() const
{
    if (!m_updatable)
        throw StoreError(QStringLiteral("Este conjunto de registros não pode ser alterado."));
}

bool Cursor::isEditing() const
{
    if (m_position < 0 || m_position >= recordCount())
        return false;
    const Row& row = m_rows[m_position];
    return row.isNew || row.changed.contains(true);
}

void Cursor::saveIfEditing()
{
    if (isEditing())
        update();
}

void Cursor::moveTo(int position)
{
    requireOpen();
    saveIfEditing();
    m_position = std::clamp(position, -1, recordCount());
}

void Cursor::moveFirst() { moveTo(m_rows.isEmpty() ? -1 : 0); }
void Cursor::moveLast() { moveTo(m_rows.isEmpty() ? -1 : recordCount() - 1); }

void Cursor::moveNext()
{
    requireOpen();
    if (atEnd())
        throw StoreError(QStringLiteral("O cursor já está no fim do conjunto de registros."));
    moveTo(m_position + 1);
}

void Cursor::movePrevious()
{
    requireOpen();
    if (atBeginning())
        throw StoreError(QStringLiteral("O cursor já está no início do conjunto de registros."));
    moveTo(m_position - 1);
}

QVariant Cursor::valueAt(int row, int ordinal) const
{
    requireOpen();
    if (row < 0 || row >= recordCount() || ordinal < 0 || ordinal >= columnCount())
        return {};
    return m_rows[row].values[ordinal];
}

qint64 Cursor::rowIdAt(int row) const
{
    return row >= 0 && row < recordCount() ? m_rows[row].rowid : -1;
}

QString Cursor::columnName(int ordinal) const
{
    requireOpen();
    if (ordinal < 0 || ordinal >= columnCount())
        throw StoreError(QStringLiteral("O item %1 não existe nesta coleção.").arg(ordinal));
    return m_columns[ordinal].name;
}

ColumnType Cursor::columnType(int ordinal) const
{
    columnName(ordinal);
    return m_columns[ordinal].type;
}

int Cursor::columnIndex(const QString& name) const
{
    for (int i = 0; i < m_columns.size(); ++i) {
        if (m_columns[i].name.compare(name, Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

QVariant Cursor::value(int ordinal) const
{
    requireCurrent();
    columnName(ordinal);
    return m_rows[m_position].values[ordinal];
}

void Cursor::setValue(int ordinal, const QVariant& value)
{
    requireCurrent();
    requireUpdatable();
    columnName(ordinal);
    Row& row = m_rows[m_position];
    const QVariant converted = convertForColumn(value, m_columns[ordinal].type);
    if (!row.isNew && !row.changed.contains(true))
        row.original = row.values;
    row.values[ordinal] = converted;
    row.changed[ordinal] = true;
}

void Cursor::addNew()
{
    requireOpen();
    requireUpdatable();
    saveIfEditing();
    m_positionBeforeNew = m_position;
    Row row;
    row.isNew = true;
    row.values.resize(m_columns.size());
    row.changed.fill(false, m_columns.size());
    m_rows.append(std::move(row));
    m_position = recordCount() - 1;
}

void Cursor::update()
{
    requireCurrent();
    requireUpdatable();
    Row& row = m_rows[m_position];
    QStringList names;
    QVariantList values;
    for (int i = 0; i < m_columns.size(); ++i) {
        if (row.changed[i]) {
            names << quoteIdentifier(m_columns[i].name);
            values << toStorage(row.values[i], m_columns[i].type);
        }
    }
    QSqlQuery query(m_file->database());
    if (row.isNew) {
        QString sql = names.isEmpty()
            ? QStringLiteral("INSERT INTO %1 DEFAULT VALUES").arg(quoteIdentifier(m_table))
            : QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                  .arg(quoteIdentifier(m_table), names.join(QStringLiteral(", ")),
                       QStringList(names.size(), QStringLiteral("?")).join(QStringLiteral(", ")));
        query.prepare(sql);
    } else {
        if (names.isEmpty())
            return;
        query.prepare(QStringLiteral("UPDATE %1 SET %2 = ? WHERE rowid = ?")
                          .arg(quoteIdentifier(m_table), names.join(QStringLiteral(" = ?, "))));
    }
    for (const QVariant& value : values)
        query.addBindValue(value);
    if (!row.isNew)
        query.addBindValue(row.rowid);
    if (!query.exec())
        throw engineError(query.lastError(), StoreError::Access::Write);

    if (row.isNew) {
        row.rowid = query.lastInsertId().toLongLong();
        // Read the row back, so that the defaults the table gives a new row are seen.
        QSqlQuery reread(m_file->database());
        reread.prepare(QStringLiteral("SELECT * FROM %1 WHERE rowid = ?").arg(quoteIdentifier(m_table)));
        reread.addBindValue(row.rowid);
        if (reread.exec() && reread.next()) {
            const QSqlRecord record = reread.record();
            for (int i = 0; i < m_columns.size(); ++i) {
                const int index = record.indexOf(m_columns[i].name);
                if (index >= 0)
                    row.values[i] = fromStorage(reread.value(index), m_columns[i].type);
            }
        }
    }
    row.isNew = false;
    row.changed.fill(false);
    row.original.clear();
    ChangeNotifier::instance().notify(m_table);
}

void Cursor::cancelUpdate() noexcept
{
    if (!isEditing())
        return;
    Row& row = m_rows[m_position];
    if (row.isNew) {
        m_rows.removeAt(m_position);
        m_position = std::clamp(m_positionBeforeNew, -1, recordCount());
        return;
    }
    row.values = row.original;
    row.original.clear();
    row.changed.fill(false);
}

void Cursor::deleteCurrent()
{
    requireCurrent();
    requireUpdatable();
    Row& row = m_rows[m_position];
    if (!row.isNew) {
        QSqlQuery query(m_file->database());
        query.prepare(QStringLiteral("DELETE FROM %1 WHERE rowid = ?").arg(quoteIdentifier(m_table)));
        query.addBindValue(row.rowid);
        if (!query.exec())
            throw engineError(query.lastError(), StoreError::Access::Write);
        ChangeNotifier::instance().notify(m_table);
    }
    m_rows.removeAt(m_position);
    if (m_rows.isEmpty())
        m_position = -1;
}

} // namespace lavra
