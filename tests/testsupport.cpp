#include "testsupport.h"

#include "store/database.h"
#include "store/databasefile.h"
#include "store/storeerror.h"

#include <QSqlError>
#include <QSqlQuery>

namespace lavra::test {

ScratchDatabase::ScratchDatabase() : m_path(m_dir.filePath(QStringLiteral("Lavra.db")))
{
    database::create(m_path);
}

void ScratchDatabase::exec(const QString& sql) const
{
    DatabaseFile::acquire(m_path)->run(sql);
}

double ScratchDatabase::cell(const QString& table, const QString& column, const QString& key) const
{
    return scalar(QStringLiteral("SELECT %1 FROM %2 WHERE Chave = '%3'").arg(column, table, key)).toDouble();
}

QVariant ScratchDatabase::scalar(const QString& sql) const
{
    auto file = DatabaseFile::acquire(m_path);
    QSqlQuery query(file->database());
    if (!query.exec(sql) || !query.next())
        throw StoreError(engineMessage(query.lastError()));
    return query.value(0);
}

QVector<QVariant> analiseComClasses(float mo, float p, float k)
{
    QVector<QVariant> analise(36, QVariant(0));
    analise[30] = mo;
    analise[31] = p;
    analise[32] = k;
    return analise;
}

} // namespace lavra::test
