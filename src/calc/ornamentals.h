#pragma once

#include "calc/cropstep.h"

#include <QString>

namespace lavra {

struct Session;
class WindowHost;

// ---- Ornamentals (frmOrnam) -----------------------------------------------------------------

inline const QString kTituloOrnamentais = QStringLiteral("Grupo: Plantas Ornamentais");
// The topdressing of these crops is not computed: the box sends the reader to the manual.
inline const QString kConsultarMAC = QStringLiteral("Consultar MAC");
inline const QString kMsgCoberturaOrnamentais = QStringLiteral(
    "O programa não calcula o N de cobertura das plantas ornamentais: consulte o Manual de Adubação e "
    "Calagem (MAC) e informe o valor em \"Ajustar\" antes de prosseguir.");

namespace ornamentais {
enum Posicao : int { Crisantemo, Roseira };
}

// The doses of the manual, written in the program, in kg/ha. classeMO is Analise(30) as it
// stands: its limits 2.5 and 5 are tested against the class number, so classes 3 and 4 share a
// row. P and K take the classes 1 to 5; any other class has no dose.
double nitrogenioOrnamentais(int posicao, double classeMO);
std::optional<double> fosforoOrnamentais(int posicao, double classeP);
std::optional<double> potassioOrnamentais(int posicao, float classeK);

// cmdCalc: the four boxes from the doses, "Consultar MAC" in the topdressing; RefazPlano, and
// the note of an adjustment goes.
CalculoCultura CalculaOrnamentais(Session& session, int posicao);

// cmdProssegue: while the topdressing still sends to the manual, the way on is "Ajustar".
Parada ProssegueOrnamentais(Session& session, WindowHost& janelas, int posicao, const TextosNec& nec);

} // namespace lavra
