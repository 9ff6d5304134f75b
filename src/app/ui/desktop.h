#pragma once

#include <QString>

#include <functional>

class QWidget;

namespace lavra::ui {

// Opens an address or a file with the desktop's handler; a failure is not reported.
void abreExterno(const QString& endereco);
// Opens a document that comes beside the program; says so when it is not there, or when the
// desktop has no program to show it.
void abreDocumento(QWidget* parent, const QString& arquivo);
// Opens a file the program has just written with the desktop's program for its kind; when there
// is none, says where the file is. Tests answer in place of the desktop, as they answer boxes.
void mostraArquivo(QWidget* parent, const QString& caminho);
void setAbridorDeArquivos(std::function<bool(const QString& caminho)> abridor);

// Starts the first calculator program found on the machine; a failure is ignored.
void abreCalculadora();

} // namespace lavra::ui
