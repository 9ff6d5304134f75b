#include "clients.h"

namespace lavra {

namespace {

// Blanks around a name are not part of it: "ana souza " is Ana Souza.
bool sameName(const QString& a, const QString& b)
{
    return a.trimmed().compare(b.trimmed(), Qt::CaseInsensitive) == 0;
}

// Walks a table through the shared cursor for a row whose column holds the name.
bool nameInTable(Store& db, const QString& table, int ordinal, const QString& nome)
{
    db.strSQL = QStringLiteral("SELECT * FROM %1;").arg(table);
    db.AbreTabela(db.strSQL);
    bool found = false;
    while (!db.rs.atEnd()) {
        if (sameName(db.rs.value(ordinal).toString(), nome)) {
            found = true;
            break;
        }
        db.rs.moveNext();
    }
    db.fecha();
    return found;
}

} // namespace

Parada verificaCliente(Store& db, const QString& operacao, const QString& nome, const QString& nomeAnterior)
{
    try {
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
    } catch (...) {
        db.descarta();
        throw;
    }
}

} // namespace lavra
