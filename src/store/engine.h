#pragma once

#include <QSqlDatabase>
#include <QString>
#include <QStringList>

#include <functional>

namespace lavra {

// What the program asks of the database engine beyond statements.

// Adds the program's own functions to a newly opened handle. dobra(x) is the text folded for a
// comparison that ignores case, accented letters included (the engine's own folding stops at
// A to Z); null stays null. The collation lavra orders texts as the machine's alphabet does,
// case ignored.
void registraFuncoes(const QSqlDatabase& db);

// Pages copied so far and the pages of the file; false stops the copy.
using ProgressoCopia = std::function<bool(int copiadas, int total)>;

// Copies the database file at origem into a new file at destino page by page through the
// engine's online backup, so that the copy is a consistent state of the file even while this or
// another program writes to it (a write between two steps starts the copy over). destino must
// not exist yet. Throws StoreError when the file cannot be read or the copy written, and removes
// what it wrote; a stop from progresso also removes it and returns false.
bool copiaArquivoDeBanco(const QString& origem, const QString& destino, const ProgressoCopia& progresso = {});

// The engine's integrity check of a database file: empty when it is sound, else the faults found
// (the first few). Throws StoreError when the file cannot be opened as a database.
QStringList verificaIntegridade(const QString& caminho);

} // namespace lavra
