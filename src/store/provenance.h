#pragma once

#include <QString>

#include <optional>

namespace lavra {

// Where a starting row of the manual's tables came from, and how far it can be trusted
// ("high", "medium" or "low"), so that the agronomist can see it beside the figure.
struct Procedencia {
    QString fonte;
    QString confianca;
};

// The note of the starting row of the table whose first column holds the key; nothing for a
// key the program did not deliver.
std::optional<Procedencia> procedencia(const QString& tabela, const QString& chave);

} // namespace lavra
