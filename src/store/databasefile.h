#pragma once

#include <QSqlDatabase>
#include <QString>

#include <memory>

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
    void run(const QString& sql);

private:
    explicit DatabaseFile(QString path);

    QString m_path;
    QString m_key;
    QString m_name;
    int m_depth = 0;
};

QString engineMessage(const class QSqlError& error);

} // namespace lavra
