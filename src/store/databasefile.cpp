#include "databasefile.h"

#include "changenotifier.h"
#include "storeerror.h"

#include <QFileInfo>
#include <QHash>
#include <QSqlError>
#include <QSqlQuery>

namespace lavra {

namespace {

QHash<QString, std::weak_ptr<DatabaseFile>>& openFiles()
{
    static QHash<QString, std::weak_ptr<DatabaseFile>> files;
    return files;
}

QString canonicalKey(const QString& path)
{
    const QFileInfo info(path);
    return info.exists() ? info.canonicalFilePath() : info.absoluteFilePath();
}

} // namespace

QString engineMessage(const QSqlError& error)
{
    const QString text = error.databaseText().isEmpty() ? error.text() : error.databaseText();
    return text.trimmed();
}

std::shared_ptr<DatabaseFile> DatabaseFile::acquire(const QString& path)
{
    const QString key = canonicalKey(path);
    if (auto existing = openFiles().value(key).lock())
        return existing;
    if (!QFileInfo::exists(path))
        throw StoreError(QStringLiteral("O arquivo de banco de dados '%1' não foi encontrado.").arg(path));
    std::shared_ptr<DatabaseFile> file(new DatabaseFile(path));
    openFiles().insert(key, file);
    return file;
}

DatabaseFile::DatabaseFile(QString path) : m_path(std::move(path)), m_key(canonicalKey(m_path))
{
    static int serial = 0;
    m_name = QStringLiteral("lavra-%1").arg(++serial);
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name);
    db.setDatabaseName(m_path);
    db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000"));
    if (!db.open()) {
        const QString message = engineMessage(db.lastError());
        db = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_name);
        throw StoreError(message);
    }
}

DatabaseFile::~DatabaseFile()
{
    {
        QSqlDatabase db = QSqlDatabase::database(m_name, false);
        while (m_depth > 0) {
            // A transaction left open by a failure is never half-kept.
            QSqlQuery(db).exec(QStringLiteral("ROLLBACK"));
            m_depth = 0;
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(m_name);
    openFiles().remove(m_key);
}

QSqlDatabase DatabaseFile::database() const
{
    return QSqlDatabase::database(m_name, false);
}

void DatabaseFile::run(const QString& sql)
{
    QSqlQuery query(database());
    if (!query.exec(sql))
        throw StoreError(engineMessage(query.lastError()));
}

void DatabaseFile::begin()
{
    run(QStringLiteral("SAVEPOINT lavra_%1").arg(m_depth + 1));
    ++m_depth;
}

void DatabaseFile::commit()
{
    if (m_depth == 0)
        throw StoreError(QStringLiteral("Não há transação aberta."));
    run(QStringLiteral("RELEASE lavra_%1").arg(m_depth));
    --m_depth;
}

void DatabaseFile::rollback()
{
    if (m_depth == 0)
        throw StoreError(QStringLiteral("Não há transação aberta."));
    const int depth = m_depth--;
    run(QStringLiteral("ROLLBACK TO lavra_%1").arg(depth));
    run(QStringLiteral("RELEASE lavra_%1").arg(depth));
    // Views may have shown rows that are now undone.
    ChangeNotifier::instance().notify(QString());
}

} // namespace lavra
