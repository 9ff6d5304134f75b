#pragma once

#include <QString>

#include <functional>

class QAbstractItemView;
class QLabel;
class QLineEdit;
class QListWidget;
class QWidget;

namespace lavra {
class CursorModel;
class StoreError;
}

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

// A masked box (a date) takes its digits from the start when it is clicked while empty.
void mascaraDoInicio(QLineEdit* caixa);

// A length given in twips, in the widget's pixels.
int twips(const QWidget* widget, int valor);

// The need a step works on, in bold above it.
QLabel* rotuloDestaque(const QString& texto, const QString& nome, QWidget* pai);

// A caption whose mnemonic takes the focus to its field.
QLabel* rotulo(const QString& texto, QWidget* campo, QWidget* pai, const QString& nome = {});

// A box of figures the step works out and the user only reads: right-aligned, reached by a
// click but not by Tab, and as wide as the sample text when one is given.
QLineEdit* caixaSomenteLeitura(QWidget* pai, const QString& nome, const QString& amostra = {});

// Keeps a grid's current row and its model's current record together both ways. Moving off an
// edited record writes it; when that write fails the edit is dropped, the grid goes back to the
// record that stays current, and the failure is handed on.
void sincronizaGrade(QAbstractItemView* grade, CursorModel* modelo, int coluna = 0,
                     std::function<void(const StoreError&)> falha = {});

} // namespace lavra::ui
