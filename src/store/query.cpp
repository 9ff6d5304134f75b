#include "query.h"

#include "schema.h"
#include "store.h"
#include "storeerror.h"

namespace lavra::consulta {

QString condicao(const QList<Chave>& chaves, QVariantList& valores)
{
    QStringList partes;
    for (const Chave& chave : chaves) {
        // The column's own comparison finds the rows through its index; the exact one then sorts
        // out those that differ in case alone.
        const QString coluna = quoteIdentifier(chave.coluna);
        partes << coluna + QStringLiteral(" = ?");
        valores << chave.valor;
        if (!chave.ignoraCaixa) {
            partes << coluna + QStringLiteral(" = ? COLLATE BINARY");
            valores << chave.valor;
        }
    }
    return partes.isEmpty() ? QString() : QStringLiteral(" WHERE ") + partes.join(QStringLiteral(" AND "));
}

Cursor sql(const Store& db, const QString& comando, const QVariantList& valores)
{
    Connection cn(db.strConn);
    cn.open();
    Cursor rs;
    rs.open(comando, valores, cn);
    cn.close();
    return rs;
}

Cursor linhas(const Store& db, const QString& tabela, const QList<Chave>& chaves)
{
    QVariantList valores;
    const QString onde = condicao(chaves, valores);
    return sql(db, QStringLiteral("SELECT * FROM %1%2 ORDER BY rowid").arg(quoteIdentifier(tabela), onde), valores);
}

std::optional<QVector<QVariant>> primeira(const Store& db, const QString& tabela, const QList<Chave>& chaves)
{
    QVariantList valores;
    const QString onde = condicao(chaves, valores);
    Cursor rs = sql(db, QStringLiteral("SELECT * FROM %1%2 ORDER BY rowid LIMIT 1").arg(quoteIdentifier(tabela), onde),
                    valores);
    if (rs.atEnd())
        return std::nullopt;
    QVector<QVariant> linha(rs.columnCount());
    for (int i = 0; i < rs.columnCount(); ++i)
        linha[i] = rs.value(i);
    return linha;
}

bool existe(const Store& db, const QString& tabela, const QList<Chave>& chaves)
{
    QVariantList valores;
    const QString onde = condicao(chaves, valores);
    return !sql(db, QStringLiteral("SELECT 1 FROM %1%2 LIMIT 1").arg(quoteIdentifier(tabela), onde), valores).atEnd();
}

QString coluna(const QString& tabela, int ordinal)
{
    const TableDef* definicao = schema::findTable(tabela);
    if (!definicao || ordinal < 0 || ordinal >= definicao->columns.size())
        throw StoreError(QStringLiteral("A tabela %1 não tem a coluna %2.").arg(tabela).arg(ordinal));
    return definicao->columns[ordinal].name;
}

} // namespace lavra::consulta
