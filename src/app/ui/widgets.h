#pragma once

#include <QString>

class QAbstractItemView;
class QListWidget;
class QWidget;

namespace lavra::ui {

// A list or grid starts with nothing chosen, and the focus alone never chooses: Qt would
// otherwise make the first row current as the view gets the focus, and a step reading that row
// would go on with a choice the user never made.
void semEscolhaInicial(QAbstractItemView* vista);

// The row the user selected, or -1. Never the current row, which focus and scrolling move.
int linhaEscolhida(const QAbstractItemView* vista);

// The text of the selected item of a list, empty when nothing is selected.
QString textoEscolhido(const QListWidget* lista);

// Enter presses the window's default button, as in a dialog: the steps are plain windows, where
// Qt would otherwise let Enter do nothing.
void enterAcionaPadrao(QWidget* janela);

} // namespace lavra::ui
