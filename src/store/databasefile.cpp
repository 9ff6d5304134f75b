#include "databasefile.h"

#include "changenotifier.h"
#include "engine.h"
#include "errortext.h"

#include <QCoreApplication>
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

// A couple of seconds: long enough to outlast another program's own short write, short enough
// that a file held for good is told before the user thinks the program froze.
int& configuredBusyTimeout()
{
    static int milliseconds = 2000;
    return milliseconds;
}

// Set once a statement gave up on a held file, until control returns to the event loop.
bool& busyGivenUp()
{
    static bool givenUp = false;
    return givenUp;
}

int effectiveBusyTimeout() { return busyGivenUp() ? 0 : configuredBusyTimeout(); }

template <typename F>
void forEachOpenFile(F f)
{
    for (const auto& weak : openFiles()) {
        if (const auto file = weak.lock())
            f(*file);
    }
}

} // namespace

QString engineMessage(const QSqlError& error)
{
    const QString text = error.databaseText().isEmpty() ? error.text() : error.databaseText();
    return text.trimmed();
}

StoreError engineError(const QSqlError& error, StoreError::Access access)
{
    const QString words = engineMessage(error);
    bool numeric = false;
    int code = error.nativeErrorCode().toInt(&numeric);
    if (!numeric)
        code = -1;
    if (engineFailure(code, words) == EngineFailure::Busy)
        DatabaseFile::busyGaveUp();
    return StoreError(plainEngineText(code, words), words, access);
}

void DatabaseFile::setBusyTimeout(int milliseconds)
{
    configuredBusyTimeout() = milliseconds;
    forEachOpenFile([](const DatabaseFile& file) { file.applyBusyTimeout(effectiveBusyTimeout()); });
}

int DatabaseFile::busyTimeout() { return configuredBusyTimeout(); }

void DatabaseFile::busyGaveUp()
{
    // Without an event loop there is no user action to end, so every statement waits in full.
    if (busyGivenUp() || !QCoreApplication::instance())
        return;
    busyGivenUp() = true;
    forEachOpenFile([](const DatabaseFile& file) { file.applyBusyTimeout(0); });
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        []() {
            busyGivenUp() = false;
            forEachOpenFile([](const DatabaseFile& file) { file.applyBusyTimeout(configuredBusyTimeout()); });
        },
        Qt::QueuedConnection);
}

void DatabaseFile::applyBusyTimeout(int milliseconds) const
{
    QSqlQuery(database()).exec(QStringLiteral("PRAGMA busy_timeout = %1").arg(milliseconds));
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
    db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(effectiveBusyTimeout()));
    if (!db.open()) {
        const StoreError error = engineError(db.lastError(), StoreError::Access::Read);
        db = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_name);
        throw error;
    }
    registraFuncoes(db);
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

void DatabaseFile::run(const QString& sql, StoreError::Access access)
{
    QSqlQuery query(database());
    if (!query.exec(sql))
        throw engineError(query.lastError(), access);
}

qint64 DatabaseFile::changeCount() const
{
    QSqlQuery query(database());
    if (query.exec(QStringLiteral("SELECT total_changes()")) && query.next())
        return query.value(0).toLongLong();
    return -1;
}

void DatabaseFile::begin()
{
    const qint64 changes = changeCount();
    run(QStringLiteral("SAVEPOINT lavra_%1").arg(m_depth + 1));
    ++m_depth;
    m_changesAtBegin.append(changes);
}

void DatabaseFile::commit()
{
    if (m_depth == 0)
        throw StoreError(QStringLiteral("Não há transação aberta."));
    run(QStringLiteral("RELEASE lavra_%1").arg(m_depth));
    --m_depth;
    m_changesAtBegin.removeLast();
}

void DatabaseFile::rollback()
{
    if (m_depth == 0)
        throw StoreError(QStringLiteral("Não há transação aberta."));
    const int depth = m_depth--;
    const qint64 before = m_changesAtBegin.takeLast();
    const bool undoesRows = before < 0 || changeCount() != before;
    run(QStringLiteral("ROLLBACK TO lavra_%1").arg(depth));
    run(QStringLiteral("RELEASE lavra_%1").arg(depth));
    // Views may have shown rows that are now undone. A transaction that wrote no row undoes
    // nothing they could show, and re-reading a file that just refused a write would only
    // fail again and tell the user twice.
    if (undoesRows)
        ChangeNotifier::instance().notify(QString());
}

} // namespace lavra
