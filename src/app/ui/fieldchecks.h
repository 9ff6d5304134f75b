#pragma once

#include "base/validation.h"

#include <QString>
#include <QVariant>

#include <initializer_list>

class QLineEdit;
class QWidget;

namespace lavra::ui {

// Checks a numeric field: only digits and the machine's decimal symbol pass. Shows the boxes,
// empties a field that holds no number, and returns true when the field was refused.
bool ValidaNumero(QLineEdit* caixa);

// Checks the field each time it is left, blanks around taken off first, and sends the focus back
// to it when refused. A field with bounds is refused outside them too, after ValidaNumero.
void checaAoSair(QLineEdit* caixa, std::optional<Grandeza> grandeza = std::nullopt);
// Gives bounds to a field whose leaving is checked elsewhere.
void defineGrandeza(QLineEdit* caixa, Grandeza grandeza);

// The check once more where the value is about to be stored or used (Executar, Calcular): a text
// refused as the field was left may still stand there. Shows the first refusal and puts the focus
// on the field, whose text stays for correction; true when refused. An empty field passes.
bool recusaCampo(QLineEdit* caixa);
// The same over several fields, stopping at the first refused.
bool recusaCampos(std::initializer_list<QLineEdit*> caixas);
// Checks the field at each change of its text.
void checaAoMudar(QLineEdit* caixa);

// The date check, with its box.
bool ValidaData(QWidget* parent, const QString& digitos);

// The warning against a yield typed in kilograms.
void AvisaValorElevado(QWidget* parent, const QVariant& valor);

} // namespace lavra::ui
