#pragma once

#include "app/ui/factory.h"

namespace lavra::ui {

// The report of a saved recommendation, one window per layout. Each is built from the saved row
// named by LaudoAnalise and LaudoCultivo of the session; a refusal (no company) is told to the
// user and no window is made.
QWidget* criaRptLdForml(Session& session, WindowRegistry& windows);
QWidget* criaRptLdFormlacao(Session& session, WindowRegistry& windows);
QWidget* criaRptLdFlorest(Session& session, WindowRegistry& windows);

// The orientations of the technician on the open report, and the saved recommendations.
QWidget* criaFrmObsLaudo(Session& session, WindowRegistry& windows);
QWidget* criaFrmAbreLaudo(Session& session, WindowRegistry& windows);

} // namespace lavra::ui
