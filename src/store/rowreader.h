#pragma once

#include "schema.h"

#include <QSqlQuery>
#include <QString>
#include <QVariant>
#include <QVector>

#include <memory>

namespace lavra {

class Connection;
class DatabaseFile;

// The rows of a statement over one table, one at a time, for results too large to hold in a
// cursor: read-only and forward only. Values are typed as a cursor types them.
class RowReader {
public:
    // Runs the statement with values bound to its '?' in order; throws StoreError when refused.
    RowReader(const Connection& connection, const QString& table, const QString& sql, const QVariantList& values = {});
    RowReader(const RowReader&) = delete;
    RowReader& operator=(const RowReader&) = delete;
    ~RowReader();

    int columnCount() const { return static_cast<int>(m_names.size()); }
    QString columnName(int ordinal) const { return m_names.value(ordinal); }
    ColumnType columnType(int ordinal) const { return m_types.value(ordinal, ColumnType::Text); }

    // Moves to the next row; false past the last. A damaged page throws rather than ending early.
    bool next();
    QVariant value(int ordinal) const;

private:
    std::shared_ptr<DatabaseFile> m_file;
    QSqlQuery m_query;
    QVector<QString> m_names;
    QVector<ColumnType> m_types;
};

} // namespace lavra
