#include "connection.h"

#include "base/numbers.h"
#include "changenotifier.h"
#include "databasefile.h"
#include "storeerror.h"

#include <QDate>
#include <QDateTime>
#include <QRegularExpression>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

#include <algorithm>
#include <cmath>
#include <limits>

namespace lavra {

namespace {

const QString kRowidAlias = QStringLiteral("__lavra_rowid");

QString unquote(const QString& identifier)
{
    if (identifier.size() >= 2
        && ((identifier.front() == QLatin1Char('[') && identifier.back() == QLatin1Char(']'))
            || (identifier.front() == QLatin1Char('"') && identifier.back() == QLatin1Char('"'))))
        return identifier.mid(1, identifier.size() - 2);
    return identifier;
}

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
    return unquote(match.captured(1));
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

std::optional<QDate> parseDate(const QString& text)
{
    for (const char* format : {"dd/MM/yyyy", "d/M/yyyy", "yyyy-MM-dd"}) {
        const QDate date = QDate::fromString(text.trimmed(), QString::fromLatin1(format));
        if (date.isValid())
            return date;
    }
    const QDateTime stamp = QDateTime::fromString(text.trimmed(), Qt::ISODate);
    if (stamp.isValid())
        return stamp.date();
    return std::nullopt;
}

[[noreturn]] void mismatch(const QVariant& value)
{
    throw StoreError(QStringLiteral("Tipo de dados incompatível: o valor '%1' não cabe no campo.")
                         .arg(value.toString()));
}

} // namespace

QVariant convertForColumn(const QVariant& value, ColumnType type)
{
    if (value.isNull() || !value.isValid())
        return {};
    switch (type) {
    case ColumnType::Text:
        if (value.typeId() == QMetaType::QDate)
            return value.toDate().toString(QStringLiteral("dd/MM/yyyy"));
        if (value.typeId() == QMetaType::QString)
            return value.toString();
        return variantNumberText(value);
    case ColumnType::Date: {
        if (value.typeId() == QMetaType::QDate || value.typeId() == QMetaType::QDateTime)
            return value.toDate();
        if (const auto date = parseDate(value.toString()))
            return *date;
        throw StoreError(QStringLiteral("Data inválida: '%1'.").arg(value.toString()));
    }
    default: break;
    }

    const auto number = toNumber(value);
    if (!number)
        mismatch(value);
    switch (type) {
    case ColumnType::Single:
        if (std::fabs(*number) > std::numeric_limits<float>::max())
            throw StoreError(QStringLiteral("Estouro: o valor '%1' é grande demais para o campo.").arg(value.toString()));
        return QVariant(toSingle(*number));
    case ColumnType::SmallInt:
    case ColumnType::Long: {
        const double limit = type == ColumnType::SmallInt ? 32767.0 : 2147483647.0;
        const double rounded = static_cast<double>(roundHalfEven(*number));
        if (rounded > limit || rounded < -limit - 1)
            throw StoreError(QStringLiteral("Estouro: o valor '%1' é grande demais para o campo.").arg(value.toString()));
        return QVariant(static_cast<int>(rounded));
    }
    case ColumnType::Currency: return QVariant(std::round(*number * 10000.0) / 10000.0);
    default:
        // A 32-bit figure means its shortest decimal form: 22106.7f is kept as 22106.7, not as
        // the 22106.69921875 its bits spell.
        if (value.typeId() == QMetaType::Float)
            return QVariant(widenShortest(value.toFloat()));
        return QVariant(*number);
    }
}

// ---- Connection ----

Connection::Connection(Connection&& other) noexcept
    : m_path(std::move(other.m_path)), m_file(std::move(other.m_file)), m_transactionDepth(other.m_transactionDepth)
{
    other.m_transactionDepth = 0;
}

Connection& Connection::operator=(Connection&& other) noexcept
{
    if (this != &other) {
        rollbackOpenWork();
        m_path = std::move(other.m_path);
        m_file = std::move(other.m_file);
        m_transactionDepth = other.m_transactionDepth;
        other.m_transactionDepth = 0;
    }
    return *this;
}

Connection::~Connection() { rollbackOpenWork(); }

void Connection::rollbackOpenWork() noexcept
{
    while (m_file && m_transactionDepth > 0) {
        --m_transactionDepth;
        try {
            m_file->rollback();
        } catch (const StoreError&) {
            // The engine already dropped it.
        }
    }
}

void Connection::open() { open(m_path); }

void Connection::open(const QString& path)
{
    m_path = path;
    m_file = DatabaseFile::acquire(path);
    m_transactionDepth = 0;
}

void Connection::close()
{
    if (!m_file)
        throw StoreError(QStringLiteral("A operação não é permitida: a conexão já está fechada."));
    // Work left uncommitted by this connection is not kept.
    rollbackOpenWork();
    m_file.reset();
}

QSqlDatabase Connection::database() const
{
    if (!m_file)
        throw StoreError(QStringLiteral("A conexão não está aberta."));
    return m_file->database();
}

void Connection::execute(const QString& sql)
{
    static const QRegularExpression alter(
        QStringLiteral(R"(^\s*ALTER\s+TABLE\s+(\[[^\]]+\]|"[^"]+"|\S+)\s+ALTER\s+(?:COLUMN\s+)?(\[[^\]]+\]|"[^"]+"|\S+)\s+(\w+(?:\s*\(\s*\d+\s*\))?)\s*;?\s*$)"),
        QRegularExpression::CaseInsensitiveOption);
    if (!m_file)
        throw StoreError(QStringLiteral("A conexão não está aberta."));
    const auto match = alter.match(sql);
    if (match.hasMatch()) {
        alterColumnType(unquote(match.captured(1)), unquote(match.captured(2)), match.captured(3));
        return;
    }
    m_file->run(sql);
    ChangeNotifier::instance().notify(QString());
}

void Connection::addTextColumn(const QString& table, const QString& column, int width)
{
    execute(QStringLiteral("ALTER TABLE %1 ADD COLUMN %2 TEXT(%3)")
                .arg(quoteIdentifier(table), quoteIdentifier(column))
                .arg(width));
}

// The engine cannot change a column's type in place: the table is rebuilt with the new type
// and its rows copied across, all in one transaction.
void Connection::alterColumnType(const QString& table, const QString& column, const QString& type)
{
    QSqlQuery info(database());
    if (!info.exec(QStringLiteral("PRAGMA table_info(%1)").arg(quoteIdentifier(table))))
        throw engineError(info.lastError(), StoreError::Access::Read);
    QStringList definitions;
    QStringList names;
    bool found = false;
    while (info.next()) {
        const QString name = info.value(1).toString();
        QString declared = info.value(2).toString();
        if (name.compare(column, Qt::CaseInsensitive) == 0) {
            declared = type.toUpper();
            found = true;
        }
        QString definition = quoteIdentifier(name) + QLatin1Char(' ') + declared;
        if (schema::typeFromDeclared(declared) == ColumnType::Text)
            definition += QStringLiteral(" COLLATE NOCASE");
        if (!info.value(4).isNull())
            definition += QStringLiteral(" DEFAULT ") + info.value(4).toString();
        definitions << definition;
        names << quoteIdentifier(name);
    }
    if (!found)
        throw StoreError(QStringLiteral("O campo '%1' não existe na tabela '%2'.").arg(column, table));

    const QString rebuilt = quoteIdentifier(table + QStringLiteral("__novo"));
    Transaction transaction(*this);
    m_file->run(QStringLiteral("CREATE TABLE %1 (%2)").arg(rebuilt, definitions.join(QStringLiteral(", "))));
    m_file->run(QStringLiteral("INSERT INTO %1 (%2) SELECT %2 FROM %3 ORDER BY rowid")
                    .arg(rebuilt, names.join(QStringLiteral(", ")), quoteIdentifier(table)));
    m_file->run(QStringLiteral("DROP TABLE %1").arg(quoteIdentifier(table)));
    m_file->run(QStringLiteral("ALTER TABLE %1 RENAME TO %2").arg(rebuilt, quoteIdentifier(table)));
    transaction.commit();
}

void Connection::beginTransaction()
{
    if (!m_file)
        throw StoreError(QStringLiteral("A conexão não está aberta."));
    m_file->begin();
    ++m_transactionDepth;
}

void Connection::commitTransaction()
{
    if (!m_file || m_transactionDepth == 0)
        throw StoreError(QStringLiteral("Não há transação aberta."));
    m_file->commit();
    --m_transactionDepth;
}

void Connection::rollbackTransaction()
{
    if (!m_file || m_transactionDepth == 0)
        throw StoreError(QStringLiteral("Não há transação aberta."));
    --m_transactionDepth;
    m_file->rollback();
}

// ---- Transaction ----

Transaction::Transaction(Connection& connection) : m_connection(connection)
{
    m_connection.beginTransaction();
}

Transaction::~Transaction()
{
    if (!m_done) {
        try {
            m_connection.rollbackTransaction();
        } catch (const StoreError&) {
            // The engine already dropped the transaction; nothing is left to undo.
        }
    }
}

void Transaction::commit()
{
    m_connection.commitTransaction();
    m_done = true;
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

QVariant Cursor::fromStorage(const QVariant& stored, ColumnType type) const
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
