#include "rowreader.h"

#include "connection.h"
#include "databasefile.h"
#include "storeerror.h"

#include <QSqlError>
#include <QSqlRecord>

namespace lavra {

RowReader::RowReader(const Connection& connection, const QString& table, const QString& sql,
                     const QVariantList& values)
{
    if (!connection.isOpen())
        throw StoreError(QStringLiteral("A conexão não está aberta."));
    m_file = connection.file();
    const QSqlDatabase db = m_file->database();
    m_query = QSqlQuery(db);
    m_query.setForwardOnly(true);
    if (!m_query.prepare(sql))
        throw engineError(m_query.lastError(), StoreError::Access::Read);
    for (const QVariant& value : values)
        m_query.addBindValue(value);
    if (!m_query.exec())
        throw engineError(m_query.lastError(), StoreError::Access::Read);
    const QSqlRecord record = m_query.record();
    const auto types = declaredTypes(db, table);
    for (int i = 0; i < record.count(); ++i) {
        m_names.append(record.fieldName(i));
        m_types.append(types.value(record.fieldName(i).toLower(), ColumnType::Text));
    }
}

RowReader::~RowReader()
{
    // The statement lets go of the file before the handle may close.
    m_query.finish();
    m_query = QSqlQuery();
}

bool RowReader::next()
{
    if (m_query.next())
        return true;
    if (m_query.lastError().isValid())
        throw engineError(m_query.lastError(), StoreError::Access::Read);
    return false;
}

QVariant RowReader::value(int ordinal) const { return fromStorage(m_query.value(ordinal), columnType(ordinal)); }

} // namespace lavra
