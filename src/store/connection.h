#pragma once

#include "cursor.h"
#include "schema.h"

#include <QMap>
#include <QSqlDatabase>
#include <QString>
#include <QVariant>
#include <QVector>

#include <memory>

namespace lavra {

class DatabaseFile;

// A connection to the database file. Several connections to one file share one engine handle,
// so that a write through one is seen at once by every other and no two lock each other out.
class Connection {
public:
    Connection() = default;
    explicit Connection(QString path) : m_path(std::move(path)) {}
    Connection(Connection&&) noexcept;
    Connection& operator=(Connection&&) noexcept;
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection();

    void open();
    void open(const QString& path);
    // Closing a closed connection is an error, as callers are expected to ask first.
    void close();
    bool isOpen() const { return m_file != nullptr; }
    QString path() const { return m_path; }

    // A statement without a result. The Jet form "ALTER TABLE t ALTER c TYPE" is understood.
    void execute(const QString& sql);
    void addTextColumn(const QString& table, const QString& column, int width);

    void beginTransaction();
    void commitTransaction();
    void rollbackTransaction();

    // For views that the toolkit binds directly; valid while the connection is open.
    QSqlDatabase database() const;
    std::shared_ptr<DatabaseFile> file() const { return m_file; }

private:
    void rollbackOpenWork() noexcept;
    void alterColumnType(const QString& table, const QString& column, const QString& type);

    QString m_path;
    std::shared_ptr<DatabaseFile> m_file;
    int m_transactionDepth = 0;
};

// Begins a transaction and rolls it back when it goes out of scope without commit().
class Transaction {
public:
    explicit Transaction(Connection& connection);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    void commit();

private:
    Connection& m_connection;
    bool m_done = false;
};

// Turns a value into what a column of the given type holds; texts are read under the machine's
// setting. Throws StoreError when the value does not fit, as the engine would.
QVariant convertForColumn(const QVariant& value, ColumnType type);
// A converted value as the file keeps it: dates as ISO text, singles in their shortest form.
QVariant toStorage(const QVariant& value, ColumnType type);
// A stored value as a cursor gives it: dates as dates, singles as floats, null as null.
QVariant fromStorage(const QVariant& stored, ColumnType type);
// The declared kind of each column of a table, by its name in lower case.
QMap<QString, ColumnType> declaredTypes(const QSqlDatabase& db, const QString& table);

} // namespace lavra
