#pragma once

#include "calc/cropstep.h"

#include <QString>

namespace lavra {

class Store;
struct Session;
class WindowHost;

// ---- Sugar cane (frmCana) -------------------------------------------------------------------

// So spelled.
inline const QString kTituloCana = QStringLiteral("Grupo: Outras culturas (Cana-de-acúcar)");

// Plant cane takes this much nitrogen at planting, out of the total of its row; ratoon none.
inline constexpr double kNBaseCanaPlanta = 15;

// cmdCalc: the crop, then a yield class, then HORTN, HORTPC1 and HORTKC1 by the keys of
// chavesCana; the crop order plays no part. Drops the note of an earlier adjustment. Throws
// StoreError.
CalculoCultura CalculaCana(const Store& db, Session& session, int posicao, int posicaoExpectativa);

// cmdProssegue: the yield typed for the class goes on, not the class.
Parada ProssegueCana(Session& session, WindowHost& janelas, int posicao, const TextosNec& nec);

} // namespace lavra
