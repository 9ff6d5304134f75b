#pragma once

#include <QString>

namespace lavra::ui {

// The maker's addresses, kept in one place so that a new edition changes them here alone.
inline const QString kPaginaAtualizacao = QStringLiteral("https://www.lavra.agr.br/atualizacao");
inline const QString kPaginaCadastro = QStringLiteral("https://www.lavra.agr.br/cadastro");
inline const QString kArtigoQRT = QStringLiteral("https://www.lavra.agr.br/artigos/lavra-qrt");
inline const QString kArtigo20 = QStringLiteral("https://www.lavra.agr.br/artigos/lavra-2-0");
inline const QString kPaginaPrincipal = QStringLiteral("https://www.lavra.agr.br");
inline const QString kEmailContato = QStringLiteral("contato@lavra.agr.br");

inline const QString kTutorial = QStringLiteral("Tutorial Lavra.pdf");

} // namespace lavra::ui
