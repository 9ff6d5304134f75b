#pragma once

#include <QList>
#include <QString>

class QGroupBox;
class QLineEdit;
class QWidget;

namespace lavra::ui {

// The nine read-only boxes txtNec_0 to txtNec_8 of a forest need under a titled frame: a row per
// dressing ("Plantio", "Cobertura", "Reposição") and a column per nutrient. The boxes are added
// to caixas in their order.
QGroupBox* criaNecessidadeFlorestal(QWidget* pai, const QString& titulo, QList<QLineEdit*>& caixas);

} // namespace lavra::ui
