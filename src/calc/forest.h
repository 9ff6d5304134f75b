#pragma once

#include "calc/cropstep.h"

#include <QString>

#include <array>

namespace lavra {

struct Session;
class WindowHost;

// ---- Forest species (frmFlorest) --------------------------------------------------------------

inline const QString kTituloFlorestais = QStringLiteral("Grupo: Essências Florestais");
inline const QString kRotuloExpectativaFlorest = QStringLiteral("Expectativa de rendimento (t/ha)");

// Three dressings by three nutrients, box i of the window: Plantio N, P, K (0 to 2), Cobertura
// (3 to 5), Reposição (6 to 8).
inline constexpr int kBoxesFlorest = 9;
using TextosNecFlorest = std::array<QString, kBoxesFlorest>;
QStringList legendasEtapasFlorestais();
QStringList legendasNutrientes();

// The box of P in topdressing: no column of FLOREST feeds it.
inline constexpr int kBoxPCobertura = 4;

struct CalculoFlorestal {
    Parada desfecho;
    bool substituiResultado = false;
    TextosNecFlorest nec;
};

// cmdCalc: the nine boxes from the row of the species in FLOREST, erva-mate by its yield band,
// box 4 always "0"; RefazPlano, and the note of an adjustment goes. A missing row or a class
// the table has no column for is told, with every box empty. Throws StoreError.
CalculoFlorestal CalculaFlorestais(const Store& db, Session& session, int posicao, const QString& expectativa);

// cmdAjusta: the boxes go where frmAjustaFlorest reads them, numbers as 32-bit floats and
// anything else as its text.
void CopiaParaNecFlorest(Session& session, const TextosNecFlorest& nec);

// cmdProssegue: the species, the yield of erva-mate only, NecFlorest as 32-bit floats, a stale
// plan closed, PlanoNum 3. Refuses, writing nothing, a need not calculated or with a box that
// is no number.
Parada ProssegueFlorestais(Session& session, WindowHost& janelas, int posicao, const QString& expectativa,
    const TextosNecFlorest& nec);

} // namespace lavra
