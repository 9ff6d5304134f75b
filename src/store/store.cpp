#include "store.h"

#include "query.h"

namespace lavra {

void Store::AbreConexao()
{
    cn = Connection(strConn);
    cn.open();
}

void Store::AbreTabela(const QString& sql)
{
    AbreConexao();
    rs = Cursor();
    rs.open(sql, cn);
}

bool Store::ExisteValor(const QString& tabela, const QString& valor, int campo) const
{
    // A null text asks for an empty cell, as it always compared equal to one; a null cell stays
    // unmatched.
    const QString procurado = valor.isNull() ? QStringLiteral("") : valor;
    return consulta::existe(*this, tabela, {{consulta::coluna(tabela, campo), procurado}});
}

void Store::fecha()
{
    if (rs.isOpen())
        rs.close();
    if (cn.isOpen())
        cn.close();
}

void Store::descarta() noexcept
{
    rs = Cursor();
    cn = Connection(strConn);
}

} // namespace lavra
