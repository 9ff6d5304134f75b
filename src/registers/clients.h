#pragma once

#include "refusal.h"
#include "store/store.h"

namespace lavra {

inline const QString kMsgEdicaoNomeCliente =
    QStringLiteral("Edição do nome do cliente não é permitida enquanto houver análises cadastradas em seu nome.");
inline const QString kMsgClienteRepetido =
    QStringLiteral("Não é permitido cadastrar dois clientes com exatamente o mesmo nome");
inline const QString kMsgExclusaoCliente = QStringLiteral(
    "Exclusão de clientes não é permitida enquanto o cliente tiver análises cadastradas em seu nome.");

// The checks of the client register. The name is the client's identity, carried by his analyses,
// so it is compared without regard to case or to blanks around it. nomeAnterior is the name as it stood when editing began.
Parada verificaCliente(Store& db, const QString& operacao, const QString& nome, const QString& nomeAnterior);

} // namespace lavra
