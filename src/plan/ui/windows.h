#pragma once

#include "app/ui/factory.h"

namespace lavra::ui {

// The plan steps: commercial formulas, the formulation from raw materials, the nitrogen split
// and the final step that saves.
QWidget* criaFrmNPK(Session& session, WindowRegistry& windows);
QWidget* criaFrmFormulacao(Session& session, WindowRegistry& windows);
QWidget* criaFrmParcelaN(Session& session, WindowRegistry& windows);
// The forest plan and its dressing of nitrogen alone.
QWidget* criaFrmNPKFlorest(Session& session, WindowRegistry& windows);
QWidget* criaFrmParcNitroFlo(Session& session, WindowRegistry& windows);
QWidget* criaFrmFinalCalculo(Session& session, WindowRegistry& windows);

} // namespace lavra::ui
