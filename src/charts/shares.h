#pragma once

#include "base/outcome.h"
#include "chart.h"

#include <QString>
#include <QVariant>
#include <QVector>

#include <optional>

namespace lavra {

// A pie, or what keeps it from being drawn.
struct Pizza {
    std::optional<GraficoPizza> grafico;
    Parada recusa;
};

inline const QString kTituloOcupaCTC = QStringLiteral("Ocupação Percentual da CTCpH7");
inline const QString kTituloOcupaCusto = QStringLiteral("Participação dos Fertilizantes no Custo");

// How the CEC at pH 7 of an analysis row is shared among Ca, Mg, K, H and Al, in percent. K
// comes in mg/dm3 and is divided by 390 here, although the CTC itself was worked out with 399,
// so the five shares need not sum to 100. A CTC of 0 is refused.
Pizza OcupacaoCTC(const QVector<QVariant>& analise);
ImpressaoGrafico ImpressaoOcupacaoCTC();

// The cost of one slot of a saved recommendation: a forest slot holds "label#value" and the cost
// is the number behind the last "#" (0 when it is not one); the other plans keep the number in
// the slot. Nothing for an empty slot.
std::optional<double> CustoDoSlot(const QVariant& slot, bool floresta);
// The share of a cost in the total as a whole percentage, rounded half to even, with "%"
// behind it; empty for an empty slot.
QString CalcPerc(std::optional<double> custo, double total);

// What each product of a recommendation (the slots of Dados, the kind in PlanoTexto) takes of its
// total cost. A total of 0 and an unknown kind are refused.
Pizza ParticipacaoCusto(const QVector<QVariant>& dados, const QString& planoTexto, const QString& codCultivo);
ImpressaoGrafico ImpressaoParticipacaoCusto();

} // namespace lavra
