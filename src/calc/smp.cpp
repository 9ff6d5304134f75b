#include "smp.h"

#include "base/numbers.h"
#include "store/manualtables.h"
#include "store/query.h"
#include "store/storeerror.h"

#include <QString>

namespace lavra {

namespace {
const QString kTabelaSmp = QStringLiteral("SMP");
}

float indiceSmpConsultado(float indiceSmp)
{
    return indiceSmp < kMenorIndiceSmp ? kMenorIndiceSmp : indiceSmp;
}

std::optional<float> consultaSmp(Store& db, float indiceSmp, int indice, ComparacaoSmp)
{
    // The index column holds singles, which the store keeps in their shortest decimal form: the
    // row whose index reads as the same float is found by that form, and both comparisons agree
    // on it. An index typed with two decimals (5.45) meets no row.
    const float procurado = indiceSmpConsultado(indiceSmp);
    const auto linha = consulta::primeira(
        db, kTabelaSmp, {{consulta::coluna(kTabelaSmp, 0), widenShortest(procurado)}});
    if (!linha)
        return std::nullopt;
    manual::anotaLeitura(kTabelaSmp, *linha);
    if (indice < 0 || indice >= linha->size())
        throw StoreError(QStringLiteral("A tabela %1 não tem a coluna %2.").arg(kTabelaSmp).arg(indice));
    return linha->at(indice).toFloat();
}

} // namespace lavra
