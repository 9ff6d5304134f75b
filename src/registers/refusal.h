#pragma once

#include "base/outcome.h"

#include <QString>

namespace lavra {

// The pending operation of a register window.
inline const QString kCadastro = QStringLiteral("Cadastro");
inline const QString kEdicao = QStringLiteral("Edição");
inline const QString kExclusao = QStringLiteral("Exclusão");

} // namespace lavra
