#pragma once

#include "storeerror.h"

#include <QSqlDatabase>
#include <QString>
#include <QVector>

#include <memory>

class QSqlError;

namespace lavra {

// One engine handle per database file, shared by every connection and cursor open on it and
// closed when the last of them lets go, so that the file is free between two operations.
class DatabaseFile {
public:
    static std::shared_ptr<DatabaseFile> acquire(const QString& path);
    ~DatabaseFile();
    DatabaseFile(const DatabaseFile&) = delete;
    DatabaseFile& operator=(const DatabaseFile&) = delete;

    QSqlDatabase database() const;
    QString path() const { return m_path; }

    // Nested transactions become savepoints, so that a guarded routine may call another.
    void begin();
    void commit();
    void rollback();
    int transactionDepth() const { return m_depth; }

    // Runs a statement and throws StoreError with the engine's message if it fails.
    void run(const QString& sql, StoreError::Access access = StoreError::Access::Write);

    // How long a statement waits for a file held by another program before it gives up. Once
    // one has given up, the others of the same user action give up at once, so that the user
    // waits once and is told once; the wait is back when control returns to the event loop.
    static void setBusyTimeout(int milliseconds);
    static int busyTimeout();

private:
    explicit DatabaseFile(QString path);
    // Rows written through this handle since it opened, as the engine counts them.
    qint64 changeCount() const;
    void applyBusyTimeout(int milliseconds) const;
    static void busyGaveUp();

    friend StoreError engineError(const QSqlError& error, StoreError::Access access);

    QString m_path;
    QString m_key;
    QString m_name;
    int m_depth = 0;
    QVector<qint64> m_changesAtBegin;
};

// The engine's own words for a failure.
QString engineMessage(const QSqlError& error);
// A failure of the engine as the windows show it: plain Portuguese, the engine's words kept.
StoreError engineError(const QSqlError& error, StoreError::Access access);

} // namespace lavra
