#include "validation.h"

#include "numbers.h"

#include <iterator>

namespace lavra {

namespace {

// The soil holds so much on its exchange sites, or none: even pure humus stays far below
// 200 cmolc/dm3. A tenth of the soil's weight as extractable P or K is likewise beyond any soil.
constexpr double kTrocaveis = 200;
constexpr double kExtraiveis = 10000;
// Pure magnesium oxide, the strongest neutraliser, stands at 248 % of calcium carbonate; burnt
// and hydrated limes on sale pass 100 %, so the percentage bound of the other contents won't do.
constexpr double kPRNT = 250;
// A hundred dollars a kilogram is beyond any fertiliser or lime; below it every cost stays finite.
constexpr double kPrecoDolar = 100000;
// Twice the figure above which a yield is taken for kilograms: no crop comes near it, and what is
// refused beyond it could only have been typed by mistake.
constexpr double kToneladasPorHectare = 1000;
// The manual's highest needs are a few hundred kg/ha; 2000 leaves room for any adjustment a
// technician may mean while keeping doses and costs of the plan within reason.
constexpr double kNecessidade = 2000;
// The heaviest dressings are liquid manures, some tens of cubic metres a hectare; 500 t/ha is
// beyond any of them and keeps the quantities of the plan within reason.
constexpr double kDoseFertilizante = 500000;
// No one field of an analysis is larger, and the real has never come near a thousand a dollar.
constexpr double kArea = 1000000;
constexpr double kCotacao = 1000;

} // namespace

const Faixa& faixa(Grandeza grandeza)
{
    static const QString cmolc = QStringLiteral("cmolc/dm³");
    static const QString mg = QStringLiteral("mg/dm³");
    static const QString kgha = QStringLiteral("kg/ha");
    static const QString th = QStringLiteral("t/ha");
    static const QString pct = QStringLiteral("%");
    static const Faixa faixas[] = {
        {0, kArea, QStringLiteral("A área"), QStringLiteral("ha")},
        {0, 14, QStringLiteral("O pH"), {}},
        {0, kTrocaveis, QStringLiteral("O cálcio (Ca)"), cmolc},
        {0, kTrocaveis, QStringLiteral("O magnésio (Mg)"), cmolc},
        {0, kTrocaveis, QStringLiteral("O alumínio (Al)"), cmolc},
        {0, kTrocaveis, QStringLiteral("O H+Al"), cmolc},
        {0, 14, QStringLiteral("O índice SMP"), {}},
        {0, 100, QStringLiteral("A matéria orgânica (MO)"), pct},
        {0, 100, QStringLiteral("A argila"), pct},
        {0, kExtraiveis, QStringLiteral("O fósforo (P)"), mg},
        {0, kExtraiveis, QStringLiteral("O potássio (K)"), mg},
        {0, 100, QStringLiteral("O teor de N"), pct},
        {0, 100, QStringLiteral("O teor de P₂O₅"), pct},
        {0, 100, QStringLiteral("O teor de K₂O"), pct},
        {0, 100, QStringLiteral("O teor de matéria seca"), pct},
        {0, 1, QStringLiteral("O índice de eficiência"), {}},
        {0, kPRNT, QStringLiteral("O PRNT"), pct},
        {0, kPrecoDolar, QStringLiteral("O preço"), QStringLiteral("US$/t")},
        {0, kCotacao, QStringLiteral("A cotação do dólar"), QStringLiteral("reais")},
        {0, kToneladasPorHectare, QStringLiteral("A expectativa de rendimento"), th},
        {0, kToneladasPorHectare, QStringLiteral("A produção de massa seca do cultivo anterior"), th},
        {0, kNecessidade, QStringLiteral("O N base"), kgha},
        {0, kNecessidade, QStringLiteral("O P base"), kgha},
        {0, kNecessidade, QStringLiteral("O K base"), kgha},
        {0, kNecessidade, QStringLiteral("O N cob"), kgha},
        {0, kNecessidade, QStringLiteral("A necessidade"), kgha},
        {0, kDoseFertilizante, QStringLiteral("A quantidade da fórmula ou do adubo orgânico"), kgha},
    };
    static_assert(std::size(faixas) == static_cast<std::size_t>(Grandeza::DoseFertilizante) + 1);
    return faixas[static_cast<std::size_t>(grandeza)];
}

QString mensagemFaixa(Grandeza grandeza)
{
    const Faixa& f = faixa(grandeza);
    QString texto = f.nome + QStringLiteral(" deve estar entre ") + numberText(f.minimo) + QStringLiteral(" e ")
        + numberText(f.maximo);
    if (!f.unidade.isEmpty())
        texto += QLatin1Char(' ') + f.unidade;
    return texto + QLatin1Char('.');
}

std::optional<QString> VerificaFaixa(Grandeza grandeza, const QString& texto)
{
    const std::optional<double> valor = parseNumber(texto);
    if (!valor)
        return std::nullopt;
    const Faixa& f = faixa(grandeza);
    if (*valor < f.minimo || *valor > f.maximo)
        return mensagemFaixa(grandeza);
    return std::nullopt;
}

std::optional<QString> RecusaNumero(const QString& texto, std::optional<Grandeza> grandeza)
{
    if (texto.isEmpty())
        return std::nullopt;
    const NumberCheck check = ValidaNumero(texto);
    if (check.invalid)
        return check.messages.value(0, kMsgValorInvalido);
    if (grandeza)
        return VerificaFaixa(*grandeza, texto);
    return std::nullopt;
}

std::optional<QString> RecusaValor(Grandeza grandeza, const QString& texto)
{
    if (!parseNumber(texto))
        return isNumericText(texto) ? kMsgSimboloDecimal : kMsgValorInvalido;
    return VerificaFaixa(grandeza, texto);
}

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
