#pragma once

#include "app/ui/factory.h"

namespace lavra::ui {

// The chart windows, each worked out from the session as it opens: the Fertigraph and the CEC
// from the analysis of the chart (the chosen one or the calculation's), the evolution from the
// analyses of the field last loaded, the cost from the chosen or the calculated recommendation.
// A chart that can't be drawn is told and no window is made.
QWidget* criaFrmChart(Session& session, WindowRegistry& windows);
QWidget* criaFrmEvolFert(Session& session, WindowRegistry& windows);
QWidget* criaFrmOcupaCTC(Session& session, WindowRegistry& windows);
QWidget* criaFrmOcupaCusto(Session& session, WindowRegistry& windows);
QWidget* criaFrmChamaGrafCusto(Session& session, WindowRegistry& windows);

} // namespace lavra::ui
