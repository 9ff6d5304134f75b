#include "clients.h"

#include "store/query.h"

namespace lavra {

namespace {

// Blanks around a name are not part of it: "ana souza " is Ana Souza.
bool sameName(const QString& a, const QString& b)
{
    return a.trimmed().compare(b.trimmed(), Qt::CaseInsensitive) == 0;
}

// Whether a row of the table holds the name at that column. The name in any case is found through
// the index; failing that, each name the index holds once is compared as a person would.
bool nameInTable(const Store& db, const QString& table, int ordinal, const QString& nome)
{
    const QString column = consulta::coluna(table, ordinal);
    if (consulta::existe(db, table, {{column, nome, true}}))
        return true;
    Cursor names = consulta::sql(db, QStringLiteral("SELECT DISTINCT %1 FROM %2")
                                         .arg(quoteIdentifier(column), quoteIdentifier(table)));
    for (; !names.atEnd(); names.moveNext()) {
        if (sameName(names.value(0).toString(), nome))
            return true;
    }
    return false;
}

} // namespace

Parada verificaCliente(Store& db, const QString& operacao, const QString& nome, const QString& nomeAnterior)
{
    if (operacao == kEdicao) {
        const bool renamed = !sameName(nome, nomeAnterior);
        if (renamed && nameInTable(db, QStringLiteral("Analises"), 1, nomeAnterior))
            return Desfecho::critico(kMsgEdicaoNomeCliente);
        if (renamed && nameInTable(db, QStringLiteral("Clientes"), 0, nome))
            return Desfecho::critico(kMsgClienteRepetido);
    } else if (operacao == kCadastro) {
        if (nameInTable(db, QStringLiteral("Clientes"), 0, nome))
            return Desfecho::critico(kMsgClienteRepetido);
    } else if (operacao == kExclusao) {
        if (nameInTable(db, QStringLiteral("Analises"), 1, nome))
            return Desfecho::critico(kMsgExclusaoCliente);
    }
    return std::nullopt;
}

} // namespace lavra
