#include "converter.h"

#include "base/numbers.h"

namespace lavra {

namespace {

QList<UnidadeDeOrigem> cmolc(const char* mg, const char* g)
{
    return {{QStringLiteral("mg/dm³"), QString::fromLatin1(mg)},
            {QStringLiteral("g/dm³"), QString::fromLatin1(g)},
            {QStringLiteral("ppm"), QString::fromLatin1(mg)},
            {QStringLiteral("meq/100g"), QStringLiteral("1")},
            {QStringLiteral("meq/100cm³"), QStringLiteral("1")}};
}

// P and K are asked in mg/dm³. K from cmolc takes 391, not the 399 of the CTC.
QList<UnidadeDeOrigem> mgDm3(const char* cmolc)
{
    return {{QStringLiteral("cmolc/dm³"), QString::fromLatin1(cmolc)},
            {QStringLiteral("g/dm³"), QStringLiteral("1000")},
            {QStringLiteral("ppm"), QStringLiteral("1")},
            {QStringLiteral("meq/100g"), QString::fromLatin1(cmolc)},
            {QStringLiteral("meq/100cm³"), QString::fromLatin1(cmolc)}};
}

} // namespace

const QList<ElementoConvertido>& elementosConvertidos()
{
    static const QString kCmolc = QStringLiteral("cmolc/dm³");
    static const QList<ElementoConvertido> elementos = {
        {QStringLiteral("Ca"), kCmolc, cmolc("0.00499", "4.99")},
        {QStringLiteral("Mg"), kCmolc, cmolc("0.0082237", "8.2237")},
        {QStringLiteral("Al"), kCmolc, cmolc("0.01111111", "11.11111")},
        {QStringLiteral("H"), kCmolc, cmolc("0.1", "100")},
        {QStringLiteral("MO"),
         QStringLiteral("%"),
         {{QStringLiteral("g/dm³"), QStringLiteral("0.1")},
          {QStringLiteral("g/g"), QStringLiteral("100")},
          {QStringLiteral("g/kg"), QStringLiteral("0.1")},
          {QStringLiteral("kg/kg"), QStringLiteral("100")},
          {QStringLiteral("C%"), QStringLiteral("1.72")}}},
        {QStringLiteral("Argila"),
         QStringLiteral("%"),
         {{QStringLiteral("g/g"), QStringLiteral("100")},
          {QStringLiteral("g/kg"), QStringLiteral("0.1")},
          {QStringLiteral("kg/kg"), QStringLiteral("100")}}},
        {QStringLiteral("P"), QStringLiteral("mg/dm³"), mgDm3("100")},
        {QStringLiteral("K"), QStringLiteral("mg/dm³"), mgDm3("391")},
    };
    return elementos;
}

QString textoDoFator(const QString& fator)
{
    return numberText(toSingle(QLocale::c().toDouble(fator)));
}

std::optional<QString> Calcula(const QString& valor, const QString& fator)
{
    const auto v = parseNumber(valor);
    const auto f = parseNumber(fator);
    if (!v || !f)
        return std::nullopt;
    const float produto = toSingle(*v) * toSingle(*f);
    return formatFixed(produto, 3);
}

QString campoDaAnalise(int elemento)
{
    static const QStringList campos = {QStringLiteral("txtCa"), QStringLiteral("txtMg"), QStringLiteral("txtAl"),
                                       QString(),               QStringLiteral("txtMO"), QStringLiteral("txtArgila"),
                                       QStringLiteral("txtP"),  QStringLiteral("txtK")};
    return campos.value(elemento);
}

} // namespace lavra
