#include "insertion.h"

#include "changenotifier.h"
#include "connection.h"
#include "databasefile.h"
#include "storeerror.h"

#include <QSqlError>

namespace lavra {

namespace {

// The quoted column names of a table and their kinds; throws when rows cannot be written to it.
QStringList colunas(const Connection& connection, const QString& table, QVector<ColumnType>& tipos)
{
    const TableDef* def = schema::findTable(table);
    if (!def || !connection.isOpen())
        throw StoreError(QStringLiteral("A tabela %1 não pode receber linhas.").arg(table));
    QStringList nomes;
    for (const ColumnDef& c : def->columns) {
        nomes << quoteIdentifier(c.name);
        tipos << c.type;
    }
    return nomes;
}

void prepara(QSqlQuery& query, const QString& sql)
{
    if (!query.prepare(sql))
        throw engineError(query.lastError(), StoreError::Access::Write);
}

void liga(QSqlQuery& query, const QVector<ColumnType>& tipos, const QVector<QVariant>& valores)
{
    for (int i = 0; i < tipos.size(); ++i) {
        const QVariant valor = i < valores.size() ? valores[i] : QVariant();
        query.bindValue(i, toStorage(convertForColumn(valor, tipos[i]), tipos[i]));
    }
}

} // namespace

Insercao::Insercao(const Connection& connection, const QString& table)
    : m_table(table), m_query(connection.isOpen() ? connection.database() : QSqlDatabase())
{
    const QStringList nomes = colunas(connection, table, m_tipos);
    prepara(m_query, QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                         .arg(quoteIdentifier(table), nomes.join(QStringLiteral(", ")),
                              QStringList(nomes.size(), QStringLiteral("?")).join(QStringLiteral(", "))));
}

qint64 Insercao::insere(const QVector<QVariant>& valores)
{
    liga(m_query, m_tipos, valores);
    if (!m_query.exec())
        throw engineError(m_query.lastError(), StoreError::Access::Write);
    ChangeNotifier::instance().notify(m_table);
    return m_query.lastInsertId().toLongLong();
}

Substituicao::Substituicao(const Connection& connection, const QString& table)
    : m_table(table), m_query(connection.isOpen() ? connection.database() : QSqlDatabase())
{
    QStringList nomes = colunas(connection, table, m_tipos);
    for (QString& nome : nomes)
        nome += QStringLiteral(" = ?");
    prepara(m_query, QStringLiteral("UPDATE %1 SET %2 WHERE rowid = ?").arg(quoteIdentifier(table), nomes.join(QStringLiteral(", "))));
}

void Substituicao::substitui(qint64 rowid, const QVector<QVariant>& valores)
{
    liga(m_query, m_tipos, valores);
    m_query.bindValue(static_cast<int>(m_tipos.size()), rowid);
    if (!m_query.exec())
        throw engineError(m_query.lastError(), StoreError::Access::Write);
    ChangeNotifier::instance().notify(m_table);
}

} // namespace lavra
