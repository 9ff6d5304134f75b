#pragma once

#include <QString>

class QWidget;

namespace lavra::ui {

class WindowRegistry;

inline const QString kMsgIndisponivel = QStringLiteral("Esta parte do programa ainda não está disponível.");

// Shows a window of the chain by name; when the program has no such window yet, says so and
// returns null, so that the caller stays where it is.
QWidget* mostraJanela(QWidget* parent, WindowRegistry& windows, const QString& nome);

} // namespace lavra::ui
