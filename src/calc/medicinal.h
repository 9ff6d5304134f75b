#pragma once

#include "calc/cropstep.h"

#include <QString>

namespace lavra {

class Store;
struct Session;
class WindowHost;

// ---- Medicinal, aromatic and condiment plants (frmCondMedic) ---------------------------------

// The grain window's title, as the program has it.
inline const QString kTituloCondimentares = QStringLiteral("Grupo: Culturas Produtoras de Grãos");

// The five classes of P or K folded into the three columns of CONDMEDP and CONDMEDK: 1 and 2 read
// column 1, 3 column 2, 4 and 5 column 3; any other class reads none (0).
int classeDobrada(int classe);

// cmdCalc: N from CONDMEDN by the organic-matter class, the share at the base; P and K from the
// tables named with whatever CultivoTxt an earlier calculation left, by the folded classes.
// RefazPlano, and the note of an adjustment goes. Throws StoreError.
CalculoCultura CalculaCondimentares(const Store& db, Session& session, int posicao);

// cmdProssegue: this group has no yield.
Parada ProssegueCondimentares(Session& session, WindowHost& janelas, int posicao, const TextosNec& nec);

} // namespace lavra
