#pragma once

#include "kinds.h"

#include "base/outcome.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace lavra {
class Store;
}

namespace lavra::report {

// The technician's orientations of one saved recommendation: Info of the first row of the kind's
// table whose two keys are these becomes the text, whatever it held, in one statement. Returns
// whether a row matched; none writes nothing. Throws StoreError with the table as it was.
bool GravaInfo(Store& db, TipoLaudo tipo, const QString& codAnalise, const QString& codCultivo,
               const QString& info);

// The deletion of a saved recommendation comes in two halves so that the window can ask between
// them. The question names the key as the row stores it; nothing when no row has both keys.
Parada PerguntaExclusao(Store& db, const QString& tabela, const QString& codAnalise,
                                        const QString& codCultivo);
QString textoPerguntaExclusao(const QString& codCultivo);
// Deletes the first row with both keys, on a connection of its own. Returns whether there was one.
// Throws StoreError with the table as it was.
bool ExcluiRecomendacao(Store& db, const QString& tabela, const QString& codAnalise, const QString& codCultivo);

// The keys (column 1) of the recommendations saved in the table for that analysis, in the
// table's own order.
QStringList RecomendacoesDaAnalise(Store& db, const QString& tabela, const QString& codAnalise);

} // namespace lavra::report
