#pragma once

#include "shares.h"

#include <QString>
#include <QVariant>
#include <QVector>

namespace lavra {

struct Session;

namespace report {
enum class TipoLaudo;
}

// A chart opened from a step of the chain (GrafAvulso 0) shows the session as it stands; one
// opened from a selection window (GrafAvulso 1) shows what was chosen there.
const QVector<QVariant>& AnaliseDoGrafico(const Session& session);
Pizza ParticipacaoDoGrafico(const Session& session);

// The choices of the selection windows. Each sets GrafAvulso to 1 and throws StoreError, with
// nothing changed, when the row is gone.
void EscolheAnaliseDoGrafico(Session& session, const QString& codigo);
void EscolheRecomendacaoDoGrafico(Session& session, report::TipoLaudo tipo, const QString& codAnalise,
                                  const QString& codCultivo);

} // namespace lavra
