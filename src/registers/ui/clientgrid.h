#pragma once

#include <QString>

#include <functional>

class QListWidget;
class QTableWidget;
class QWidget;

namespace lavra {
struct Session;
struct GradeClientes;
}

namespace lavra::ui {

// The clients in a grid with a heading of column names, as both client pickers show them.
QTableWidget* criaGradeClientes(QWidget* parent);
void preencheGradeClientes(QTableWidget* grade, const GradeClientes& clientes);
// The clients of the table in the grid of a window that lists their analyses: the five columns
// 1700 twips wide and all in view. A failure is told. Returns whether there is any client.
bool carregaGradeClientes(QWidget* janela, Session& session, QTableWidget* grade);
// The incremental search of the pickers: the first client whose name starts with the text becomes
// the current row and the top of the grid. Returns that row, or -1 and moves nothing.
int buscaNaGrade(QTableWidget* grade, const QString& texto);
// The search of the windows that list a client's analyses: when the search lands on the row
// already current, the analyses are read again, as a click on that row would.
void buscaERelista(QTableWidget* grade, const QString& texto, const std::function<void()>& relista);
// Fills the list with the analyses of the client on the grid's current row; a failure is told.
void listaAnalisesDoCliente(QWidget* janela, Session& session, const QTableWidget* grade, QListWidget* lista);

} // namespace lavra::ui
