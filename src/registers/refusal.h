#pragma once

#include "app/refusal.h"

#include <QString>

#include <optional>

namespace lavra {

// The pending operation of a register window.
inline const QString kCadastro = QStringLiteral("Cadastro");
inline const QString kEdicao = QStringLiteral("Edição");
inline const QString kExclusao = QStringLiteral("Exclusão");

using Verificacao = std::optional<Recusa>;

} // namespace lavra
