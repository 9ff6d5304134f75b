#pragma once

#include <QString>

class QWidget;

namespace lavra::ui {

// Opens an address or a file with the desktop's handler; a failure is not reported.
void abreExterno(const QString& endereco);
// Opens a document that comes beside the program; says so when it is not there, or when the
// desktop has no program to show it.
void abreDocumento(QWidget* parent, const QString& arquivo);
// Starts the first calculator program found on the machine; a failure is ignored.
void abreCalculadora();

} // namespace lavra::ui
