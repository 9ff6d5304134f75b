#include "interpretation.h"

#include "base/numbers.h"

#include <cmath>
#include <initializer_list>
#include <optional>

namespace lavra {

namespace {

// The manual's tables read "class n up to bound": the first class whose bound the value does not
// exceed, and the class after the last one above every bound. A value that compares with nothing
// (NaN) matches no row.
Classe byUpperBounds(float valor, std::initializer_list<float> bounds, Classe first)
{
    Classe classe = first;
    float last = 0.0f;
    for (const float bound : bounds) {
        if (valor <= bound)
            return classe;
        ++classe;
        last = bound;
    }
    return valor > last ? classe : Classe{0};
}

// The saturations are the only tables whose lowest bound is strict.
Classe saturation(float valor, float lowest, std::initializer_list<float> bounds)
{
    if (valor < lowest)
        return 1;
    return byUpperBounds(valor, bounds, 2);
}

Classe potassium(float k, float ctc)
{
    if (ctc <= 5.0f)
        return byUpperBounds(k, {15.0f, 30.0f, 45.0f, 90.0f}, 1);
    if (ctc <= 15.0f)
        return byUpperBounds(k, {20.0f, 40.0f, 60.0f, 120.0f}, 1);
    if (ctc > 15.0f)
        return byUpperBounds(k, {30.0f, 60.0f, 90.0f, 180.0f}, 1);
    return 0;
}

struct PhosphorusCode {
    int area = 0;   // 1 ordinary, 2 irrigated rice
    int method = 0; // 1 Mehlich, 2 resin
    int clay = 0;   // clay class 1..4
};

// The caller writes three digits side by side and reads them as a number, so the digits are taken
// back from the number's text; anything that is not such a number is no code at all.
std::optional<PhosphorusCode> splitPhosphorusCode(float aux)
{
    if (!(aux >= 100.0f && aux <= 999.0f) || aux != std::trunc(aux))
        return std::nullopt;
    const QString digits = QString::number(static_cast<int>(aux));
    const PhosphorusCode code{digits[0].digitValue(), digits[1].digitValue(), digits[2].digitValue()};
    const bool valid = (code.area == 1 || code.area == 2) && (code.method == 1 || code.method == 2)
                       && code.clay >= 1 && code.clay <= 4;
    if (!valid)
        return std::nullopt;
    return code;
}

Classe phosphorus(float p, float aux)
{
    const auto code = splitPhosphorusCode(aux);
    if (!code)
        return 0;
    // Resin extracts the same whatever the soil, so neither clay nor area matters.
    if (code->method == 2)
        return byUpperBounds(p, {5.0f, 10.0f, 20.0f, 40.0f}, 1);
    // Flooded rice has its own table, which starts at class 2.
    if (code->area == 2)
        return byUpperBounds(p, {3.0f, 6.0f, 12.0f}, 2);
    switch (code->clay) {
    case 1: return byUpperBounds(p, {2.0f, 4.0f, 6.0f, 12.0f}, 1);
    case 2: return byUpperBounds(p, {3.0f, 6.0f, 9.0f, 18.0f}, 1);
    case 3: return byUpperBounds(p, {4.0f, 8.0f, 12.0f, 24.0f}, 1);
    default: return byUpperBounds(p, {7.0f, 14.0f, 21.0f, 42.0f}, 1);
    }
}

} // namespace

Classe InterpretaClasse(float valor, float aux, const QString& tipo)
{
    if (tipo == QLatin1String("pH"))
        return byUpperBounds(valor, {5.0f, 5.4f, 6.0f}, 1);
    if (tipo == QLatin1String("Ca"))
        return byUpperBounds(valor, {2.0f, 4.0f}, 2);
    if (tipo == QLatin1String("Mg"))
        return byUpperBounds(valor, {0.5f, 1.0f}, 2);
    if (tipo == QLatin1String("MO"))
        return byUpperBounds(valor, {2.5f, 5.0f}, 2);
    if (tipo == QLatin1String("CTC"))
        return byUpperBounds(valor, {5.0f, 15.0f}, 2);
    if (tipo == QLatin1String("SatAl"))
        return saturation(valor, 1.0f, {10.0f, 20.0f});
    if (tipo == QLatin1String("SatBas"))
        return saturation(valor, 45.0f, {64.0f, 80.0f});
    if (tipo == QLatin1String("K"))
        return potassium(valor, aux);
    if (tipo == QLatin1String("P"))
        return phosphorus(valor, aux);
    return 0;
}

Classe ClasseArgila(float argila)
{
    if (argila <= 20.0f)
        return 4;
    if (argila <= 40.0f)
        return 3;
    if (argila <= 60.0f)
        return 2;
    if (argila > 60.0f)
        return 1;
    return 0;
}

float SaturacaoAl(float al, float k, float ca, float mg)
{
    // 399 turns K from mg/dm3 into cmolc/dm3, as everywhere else in the program.
    const float bases = k / 399.0f + ca + mg + al;
    if (bases == 0.0f)
        return 0.0f;
    return 100.0f * al / bases;
}

bool TemBasesOuAluminio(float al, float k, float ca, float mg)
{
    return al != 0.0f || k != 0.0f || ca != 0.0f || mg != 0.0f;
}

QString TextoClasse(int classe)
{
    switch (classe) {
    case 1: return QStringLiteral("MB");
    case 2: return QStringLiteral("B");
    case 3: return QStringLiteral("M");
    case 4: return QStringLiteral("A");
    case 5: return QStringLiteral("MA");
    default: return {};
    }
}

float DoseCorrecao(double x, double teor, const QString& nutriente)
{
    // The critical level is held in single precision and the lower limit is not; the doses right on
    // either edge depend on that.
    double y1 = 0.0;
    double y2 = 0.0;
    if (nutriente == QLatin1String("P")) {
        y1 = -4e-8 * std::pow(x, 3) + 0.0026 * std::pow(x, 2) - 0.435 * x + 23.982;
        y2 = -1e-8 * std::pow(x, 3) + 0.0009 * std::pow(x, 2) - 0.145 * x + 7.994;
    } else if (nutriente == QLatin1String("K")) {
        y1 = 0.8459 * x + 12.368;
        y2 = 2.5376 * x + 37.105;
    } else {
        return 0.0f;
    }
    y1 = static_cast<double>(toSingle(y1));

    if (teor < y2)
        return 120.0f;
    if (teor > y1)
        return 0.0f;
    return toSingle((y1 - teor) * 90.0 / (y1 - y2));
}

QString CorrecaoPorClasse(int cultivo, int classe)
{
    if (cultivo != 1 && cultivo != 2)
        return {};
    const bool first = cultivo == 1;
    switch (classe) {
    case 1: return first ? QStringLiteral("2/3#80#120") : QStringLiteral("1/3#40#120");
    case 2: return first ? QStringLiteral("2/3#40#60") : QStringLiteral("1/3#20#60");
    case 3: return first ? QStringLiteral("todo#30#30") : QStringLiteral("sem#0#30");
    default: return QStringLiteral("sem#0#0");
    }
}

QString CorrecaoPorDose(int cultivo, float dose)
{
    if (cultivo != 1 && cultivo != 2)
        return {};
    const bool first = cultivo == 1;
    const double whole = std::trunc(static_cast<double>(dose));
    const QString total = numberText(whole);

    if (dose >= 60.0f && dose <= 120.0f) {
        if (first)
            return QStringLiteral("2/3#") + numberText(2 * whole / 3) + QLatin1Char('#') + total;
        return QStringLiteral("1/3#") + numberText(whole / 3) + QLatin1Char('#') + total;
    }
    if (dose > 0.0f && dose < 60.0f) {
        if (first)
            return QStringLiteral("todo#") + total + QLatin1Char('#') + total;
        return QStringLiteral("sem#0#") + total;
    }
    if (dose == 0.0f)
        return QStringLiteral("sem#0#0");
    return {};
}

} // namespace lavra
