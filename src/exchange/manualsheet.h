#pragma once

#include "store/manualtables.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace lavra::manual {

// A table of the manual written to an .xlsx workbook: a sheet named after the table, with the
// columns by their names in the first row, every row with its source and confidence after the
// columns, and a sheet "Colunas" that says what each column means. Throws ErroPasta when the
// file cannot be written, StoreError when the table cannot be read.
void exportaTabela(const Store& db, const QString& tabela, const QString& caminho);
// The history of the corrections, most recent first. Same failures.
void exportaHistorico(const Store& db, const QString& caminho);

// What a corrected workbook of that layout would change, before anything is written. A row whose
// key the table does not hold, or whose figure is no number the column takes, is refused and told;
// a column not of the table is refused as a whole; the source and confidence are not read.
struct Importacao {
    QString tabela;
    QList<Correcao> correcoes;
    QStringList recusas; // "Linha 12: ...", in the order of the sheet
    int linhasLidas = 0;
    // The changes as the user reads them, one a line.
    QString texto() const;
};
// Throws ErroPasta for a workbook that cannot be read or has no sheet of that table, StoreError
// when the table cannot be read.
Importacao leImportacao(const Store& db, const QString& tabela, const QString& caminho);

} // namespace lavra::manual
