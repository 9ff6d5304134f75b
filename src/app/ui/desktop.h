#pragma once

#include <QString>

#include <functional>

class QWidget;

namespace lavra::ui {

// Opens a web page (or an e-mail address, "mailto:") with the desktop's handler; says so, with
// the address to copy, when there is none.
void abreExterno(QWidget* parent, const QString& endereco);
// Opens a document that comes with the program, beside it or in its installation; says so when
// it is not there, or when the desktop has no program to show it.
void abreDocumento(QWidget* parent, const QString& arquivo);
// Opens a file the program has just written with the desktop's program for its kind; when there
// is none, says where the file is.
void mostraArquivo(QWidget* parent, const QString& caminho);
// Tests answer in place of the desktop, as they answer boxes: the opener gets a file's path or
// a page's address and tells whether it opened.
void setAbridorDeArquivos(std::function<bool(const QString& caminho)> abridor);

// Starts the first calculator program found on the machine; a failure is ignored.
void abreCalculadora();

} // namespace lavra::ui
