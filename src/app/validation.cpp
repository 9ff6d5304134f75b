#include "validation.h"

#include "numbers.h"

namespace lavra {

NumberCheck ValidaNumero(const QString& texto)
{
    NumberCheck check;
    QString present = texto;
    if (!present.isEmpty() && !isNumericText(present)) {
        check.invalid = true;
        check.clearField = true;
        check.messages << kMsgValorInvalido;
        present.clear();
    }
    // Signs, thousands separators and exponents pass the test above but are refused here, one
    // box for each such character.
    const QChar decimal = decimalSymbol();
    for (const QChar c : present) {
        const bool digit = c >= QLatin1Char('0') && c <= QLatin1Char('9');
        if (!digit && c != decimal) {
            check.invalid = true;
            check.messages << kMsgSimboloDecimal;
        }
    }
    return check;
}

bool ValidaData(const QString& texto)
{
    if (texto.size() < 8)
        return false;
    bool dayOk = false;
    bool monthOk = false;
    bool yearOk = false;
    const int day = texto.mid(0, 2).trimmed().toInt(&dayOk);
    const int month = texto.mid(2, 2).trimmed().toInt(&monthOk);
    const int year = texto.mid(4, 4).trimmed().toInt(&yearOk);
    if (!dayOk || !monthOk || !yearOk)
        return false;
    return day >= 1 && day <= 31 && month >= 1 && month <= 12 && year >= 1900 && year <= 2100;
}

std::optional<QString> AvisaValorElevado(const QVariant& valor)
{
    if (valor.isNull() || valor.toString().isEmpty())
        return std::nullopt;
    const auto number = toNumber(valor);
    if (number && toSingle(*number) > 500.0f)
        return kMsgValorElevado;
    return std::nullopt;
}

QString FormataNumero(const QVariant& valor, int casas)
{
    if (!isNumeric(valor))
        return valor.toString();
    if (casas < 0 || casas > 2)
        return {};
    if (valor.typeId() == QMetaType::Float)
        return formatFixed(valor.toFloat(), casas);
    return formatFixed(*toNumber(valor), casas);
}

} // namespace lavra
