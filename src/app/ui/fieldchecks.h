#pragma once

#include <QString>
#include <QVariant>

class QLineEdit;
class QWidget;

namespace lavra::ui {

// Checks a numeric field: only digits and the machine's decimal symbol pass. Shows the boxes,
// empties a field that holds no number, and returns true when the field was refused.
bool ValidaNumero(QLineEdit* caixa);

// Checks the field each time it is left, and sends the focus back to it when refused.
void checaAoSair(QLineEdit* caixa);
// Checks the field at each change of its text.
void checaAoMudar(QLineEdit* caixa);

// The date check, with its box.
bool ValidaData(QWidget* parent, const QString& digitos);

// The warning against a yield typed in kilograms.
void AvisaValorElevado(QWidget* parent, const QVariant& valor);

} // namespace lavra::ui
