#pragma once

#include "shares.h"

#include <QString>
#include <QVariant>
#include <QVector>

namespace lavra {

struct Session;
class WindowHost;

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

// The chart modes of the selection window, as ModoEscolha holds them.
inline const QString kModoFertigrafico = QStringLiteral("Fertigráfico");
inline const QString kModoOcupaCTC = QStringLiteral("OcupaCTC");
inline const QString kModoEvolFert = QStringLiteral("EvolFert");

// The chart window that a chart mode shows; empty for a mode that is no chart's.
QString JanelaDoModo(const QString& modo);

// Shows the selection of client and analysis anew for that chart mode, closing both selections
// of the charts first.
void Abre_ChamaGraf(Session& session, WindowHost& host, const QString& modo);
// "Outras análises" of a chart window: the selection anew in that window's mode, then the
// window itself goes.
void OutrasAnalises(Session& session, WindowHost& host, const QString& modo, const QString& janela);
// The same for the cost chart, whose selection is the one of the saved recommendations.
void OutrasRecomendacoes(Session& session, WindowHost& host);
// A chart window going: with CTCDoFertigrafico on, the Fertigraph it came from opens again, and
// the flag goes off in any case.
void FechaGraficoDoFertigrafico(Session& session, WindowHost& host);

} // namespace lavra
