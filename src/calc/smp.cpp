#include "smp.h"

#include "base/numbers.h"
#include "store/store.h"

namespace lavra {

float indiceSmpConsultado(float indiceSmp)
{
    return indiceSmp < kMenorIndiceSmp ? kMenorIndiceSmp : indiceSmp;
}

std::optional<float> consultaSmp(Store& db, float indiceSmp, int indice, ComparacaoSmp comparacao)
{
    const float procurado = indiceSmpConsultado(indiceSmp);
    // Both sides are written as the machine writes a float, so the table answers under a comma
    // and a point alike, and an index typed with two decimals (5.45) meets no row.
    const QString texto = numberText(procurado);
    try {
        db.AbreTabela(QStringLiteral("SELECT * FROM SMP;"));
        std::optional<float> necessidade;
        for (; !db.rs.atEnd(); db.rs.moveNext()) {
            const QVariant coluna0 = db.rs.value(0);
            if (coluna0.isNull())
                continue;
            const bool confere = comparacao == ComparacaoSmp::Texto
                ? variantNumberText(coluna0).toUpper() == texto
                : coluna0.toFloat() == procurado;
            if (confere) {
                necessidade = db.rs.value(indice).toFloat();
                break;
            }
        }
        db.fecha();
        return necessidade;
    } catch (...) {
        db.descarta();
        throw;
    }
}

} // namespace lavra
