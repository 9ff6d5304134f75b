#include "insertion.h"

#include "changenotifier.h"
#include "connection.h"
#include "databasefile.h"
#include "storeerror.h"

#include <QSqlError>

namespace lavra {

Insercao::Insercao(const Connection& connection, const QString& table) : m_table(table)
{
    const TableDef* def = schema::findTable(table);
    if (!def || !connection.isOpen())
        throw StoreError(QStringLiteral("A tabela %1 não pode receber linhas.").arg(table));
    QStringList nomes;
    for (const ColumnDef& c : def->columns) {
        nomes << quoteIdentifier(c.name);
        m_tipos << c.type;
    }
    m_query = QSqlQuery(connection.database());
    const QString sql = QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                            .arg(quoteIdentifier(table), nomes.join(QStringLiteral(", ")),
                                 QStringList(nomes.size(), QStringLiteral("?")).join(QStringLiteral(", ")));
    if (!m_query.prepare(sql))
        throw engineError(m_query.lastError(), StoreError::Access::Write);
}

void Insercao::insere(const QVector<QVariant>& valores)
{
    for (int i = 0; i < m_tipos.size(); ++i) {
        const QVariant valor = i < valores.size() ? valores[i] : QVariant();
        m_query.bindValue(i, toStorage(convertForColumn(valor, m_tipos[i]), m_tipos[i]));
    }
    if (!m_query.exec())
        throw engineError(m_query.lastError(), StoreError::Access::Write);
    ChangeNotifier::instance().notify(m_table);
}

} // namespace lavra
