#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

#include <optional>

namespace lavra {

inline const QString kMsgValorInvalido = QStringLiteral("Valor inválido!");
inline const QString kMsgSimboloDecimal =
    QStringLiteral("Símbolo decimal diferente da configuracão do computador!");
inline const QString kMsgDataInvalida = QStringLiteral("Digite uma data válida e no formato dd/mm/aaaa");
inline const QString kMsgValorElevado =
    QStringLiteral("Valor elevado detectado! Este valor deve ser em toneladas por hectare.");

// The check of a numeric field as it is left: only digits and the machine's decimal symbol pass.
struct NumberCheck {
    bool invalid = false;      // the caller returns the focus to the field
    bool clearField = false;   // the text was not a number at all
    QStringList messages;      // shown in order, one box each
};
NumberCheck ValidaNumero(const QString& texto);

// The digits of a date, day first, without separators. Days are not checked against the month.
bool ValidaData(const QString& texto);

// The warning against a yield typed in kilograms instead of tonnes per hectare, if due.
std::optional<QString> AvisaValorElevado(const QVariant& valor);

// "0", "0.0" or "0.00" for 0, 1 or 2 decimals; other counts give an empty text, and a value that
// is not a number comes back as text, so that "---" passes through unchanged.
QString FormataNumero(const QVariant& valor, int casas);

} // namespace lavra
