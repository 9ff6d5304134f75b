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
        alterColumnType(unquoteIdentifier(match.captured(1)), unquoteIdentifier(match.captured(2)), match.captured(3));
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

} // namespace lavra
