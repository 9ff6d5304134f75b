#pragma once

#include <QString>

#include <functional>

class QPrinter;
class QWidget;

namespace lavra::ui {

// The printer and file dialogs of the program. Like the message boxes, each goes through one
// place, where tests answer in place of the user; without an answerer the dialog is shown.

// The print dialog on that printer; false when the user cancels. The answerer sets the printer
// up as the user would (output file, copies) and says whether to print.
using RespondedorImpressao = std::function<bool(QPrinter&)>;
void setRespondedorImpressao(RespondedorImpressao respondedor);
bool escolheImpressora(QWidget* parent, QPrinter& printer);

// The save dialog: the chosen path, or empty when cancelled. The answerer gets the title and
// the filter and gives the path.
using RespondedorArquivo = std::function<QString(const QString& titulo, const QString& filtro)>;
void setRespondedorArquivo(RespondedorArquivo respondedor);
QString arquivoParaSalvar(QWidget* parent, const QString& titulo, const QString& inicial, const QString& filtro,
                          QString* filtroEscolhido = nullptr);

// The open dialog, answered by the same answerer: the chosen path, or empty when cancelled.
QString arquivoParaAbrir(QWidget* parent, const QString& titulo, const QString& inicial, const QString& filtro);

// A file name from a text such as a key with dates, with the characters no file name takes
// turned into "-".
QString nomeDeArquivo(const QString& texto);
// Where a save dialog starts: the user's folder for pictures or documents, or the home folder
// where that one does not exist.
QString pastaInicial(bool imagens);

} // namespace lavra::ui
