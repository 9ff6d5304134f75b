#pragma once

#include "exchange/manualsheet.h"

class QWidget;

namespace lavra {
class Store;
}

namespace lavra::ui {

// The history of the corrections of the manual's tables, most recent first, in the modal dialog
// frmHistoricoTabelas, from which it can be written to a workbook.
void mostraHistorico(QWidget* pai, const Store& db, const QList<manual::RegistroHistorico>& registros);

// What a workbook would change in a table, and the rows it refused, in the modal dialog
// frmImportaTabela; true when the user chooses "Aplicar".
bool confirmaImportacao(QWidget* pai, const manual::Importacao& importacao, const QString& arquivo);

// The path chosen in the save dialog for a workbook, ending in .xlsx; empty when cancelled.
QString pastaParaSalvar(QWidget* pai, const QString& titulo, const QString& nome);

} // namespace lavra::ui
