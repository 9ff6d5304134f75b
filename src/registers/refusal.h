#pragma once

#include <QString>

#include <optional>

namespace lavra {

// The pending operation of a register window.
inline const QString kCadastro = QStringLiteral("Cadastro");
inline const QString kEdicao = QStringLiteral("Edição");
inline const QString kExclusao = QStringLiteral("Exclusão");

// An entry the register will not take, with the box that says why.
struct Recusa {
    QString mensagem;
    bool critica = false;  // protects linked data
};

using Verificacao = std::optional<Recusa>;

} // namespace lavra
