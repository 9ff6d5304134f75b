#pragma once

#include <QString>
#include <cstdint>

namespace lavra {

// Classes of the manual: 1 "MB" very low .. 5 "MA" very high, 0 when nothing matched.
using Classe = std::int16_t;

// Class of one value of an analysis. "K" takes the CTC in aux; "P" takes in aux the three-digit
// code: area condition (1 ordinary, 2 irrigated rice), extraction method (1 Mehlich, 2 resin),
// clay class (1..4). Every comparison is made in 32-bit floats.
Classe InterpretaClasse(float valor, float aux, const QString& tipo);

// Clay class 1 (most clayey) to 4.
Classe ClasseArgila(float argila);

// Aluminium saturation in %, K in mg/dm3 and the rest in cmolc/dm3. With nothing in the
// denominator there is nothing to saturate, and the result is 0.
float SaturacaoAl(float al, float k, float ca, float mg);

// Whether an analysis can be interpreted at all: with Ca, Mg, K and Al all zero the soil would
// have no exchangeable cations, which is a typing error, not a soil.
bool TemBasesOuAluminio(float al, float k, float ca, float mg);
inline const QString kMsgSemBases = QStringLiteral(
    "Esta análise não pode ser interpretada: Ca, Mg, K e Al estão todos em zero. Confira os valores "
    "digitados.");

// "MB", "B", "M", "A", "MA"; empty for anything else.
QString TextoClasse(int classe);

// Correction dose in kg/ha: x is clay for "P" and CTC for "K"; any other name gives 0.
float DoseCorrecao(double x, double teor, const QString& nutriente);

// The manual's correction as "fraction#dose now#total dose".
QString CorrecaoPorClasse(int cultivo, int classe);
QString CorrecaoPorDose(int cultivo, float dose);

} // namespace lavra
