#pragma once

#include "app/ui/factory.h"

namespace lavra::ui {

// The selection of client and analysis, shared by the calculation, the analysis register and
// the charts.
QWidget* criaFrmCliAn(Session& session, WindowRegistry& windows);

// The steps of the calculation: crop group, liming, the crop windows and the adjustment of a need.
QWidget* criaFrmGrupCult(Session& session, WindowRegistry& windows);
QWidget* criaFrmCalagem(Session& session, WindowRegistry& windows);
QWidget* criaFrmGraos(Session& session, WindowRegistry& windows);
QWidget* criaFrmHort(Session& session, WindowRegistry& windows);
QWidget* criaFrmForrage(Session& session, WindowRegistry& windows);
QWidget* criaFrmOrnam(Session& session, WindowRegistry& windows);
QWidget* criaFrmCondMedic(Session& session, WindowRegistry& windows);
QWidget* criaFrmCana(Session& session, WindowRegistry& windows);
QWidget* criaFrmFlorest(Session& session, WindowRegistry& windows);
QWidget* criaFrmAjusta(Session& session, WindowRegistry& windows);
QWidget* criaFrmAjustaFlorest(Session& session, WindowRegistry& windows);

} // namespace lavra::ui
