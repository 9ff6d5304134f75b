#pragma once

#include "connection.h"

#include <QList>
#include <QString>
#include <QVariant>
#include <QVector>

#include <optional>

namespace lavra {

class Store;

// A column and the value it must hold. Texts match byte by byte, case and accents included, as the
// routines that walk a table compare; a statement's own comparison ignores the case of letters,
// and a key read that way says so. A null cell matches nothing.
struct Chave {
    QString coluna;
    QVariant valor;
    bool ignoraCaixa = false;
};

// Lookups by key through the indexes, each on a connection of its own that closes on return, so
// that a caller walking the shared pair is left alone. Failures throw StoreError.
namespace consulta {

// The rows that hold every key, in the order the table keeps them, as an editable cursor standing
// on the first. The cursor stays usable after the call.
Cursor linhas(const Store& db, const QString& tabela, const QList<Chave>& chaves);
// The first of those rows, every column typed as the cursor types it; nothing when there is none.
std::optional<QVector<QVariant>> primeira(const Store& db, const QString& tabela, const QList<Chave>& chaves);
// Whether any row holds every key.
bool existe(const Store& db, const QString& tabela, const QList<Chave>& chaves);
// Any statement, with values bound to its '?' in order.
Cursor sql(const Store& db, const QString& comando, const QVariantList& valores = {});

// " WHERE ..." for those keys, their values appended to valores in the order of the '?'; empty
// for no keys.
QString condicao(const QList<Chave>& chaves, QVariantList& valores);

// The name of a column of a table by ordinal, for the routines that address columns by position.
QString coluna(const QString& tabela, int ordinal);

} // namespace consulta

} // namespace lavra
