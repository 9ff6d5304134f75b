#pragma once

#include "app/ui/factory.h"

namespace lavra::ui {

// The register windows, built by name through the window registry.
QWidget* criaFrmCadAnalise(Session& session, WindowRegistry& windows);
QWidget* criaFrmCliente(Session& session, WindowRegistry& windows);
QWidget* criaFrmCadCli(Session& session, WindowRegistry& windows);
QWidget* criaFrmFertiliz(Session& session, WindowRegistry& windows);
QWidget* criaFrmCadCalc(Session& session, WindowRegistry& windows);
QWidget* criaFrmCotac(Session& session, WindowRegistry& windows);
QWidget* criaFrmEmpresa(Session& session, WindowRegistry& windows);
QWidget* criaFrmTecResp(Session& session, WindowRegistry& windows);

} // namespace lavra::ui
