#pragma once

#include "schema.h"

#include <QSqlQuery>
#include <QString>
#include <QVariant>
#include <QVector>

namespace lavra {

class Connection;

// Adds many rows to one table through one prepared statement, each value converted as a cursor
// converts it. Meant for bulk work inside a transaction of the same connection.
class Insercao {
public:
    Insercao(const Connection& connection, const QString& table);
    // One value per column, in the table's order. Throws StoreError, as the engine refuses.
    // Returns the new row's rowid.
    qint64 insere(const QVector<QVariant>& valores);

private:
    QString m_table;
    QVector<ColumnType> m_tipos;
    QSqlQuery m_query;
};

// Overwrites whole rows of one table, found by rowid, through one prepared statement.
class Substituicao {
public:
    Substituicao(const Connection& connection, const QString& table);
    // One value per column, in the table's order. Throws StoreError, as the engine refuses.
    void substitui(qint64 rowid, const QVector<QVariant>& valores);

private:
    QString m_table;
    QVector<ColumnType> m_tipos;
    QSqlQuery m_query;
};

} // namespace lavra
