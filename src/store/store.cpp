#include "store.h"

#include "cursormodel.h"

#include <QDate>

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

void Store::AbreTabelaLaudo(const QString& tabela)
{
    cnLaudo = Connection(strConn);
    cnLaudo.open();
    rsLaudo = Cursor();
    rsLaudo.open(QStringLiteral("SELECT * FROM ") + tabela, cnLaudo);
}

bool Store::ExisteValor(const QString& tabela, const QString& valor, int campo) const
{
    Connection connection(strConn);
    connection.open();
    Cursor cursor;
    cursor.open(QStringLiteral("SELECT * FROM ") + tabela, connection);
    bool found = false;
    while (!cursor.atEnd()) {
        const QVariant cell = cursor.value(campo);
        // A null cell equals nothing.
        if (!cell.isNull() && cellText(cell) == valor) {
            found = true;
            break;
        }
        cursor.moveNext();
    }
    cursor.close();
    connection.close();
    return found;
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
