#pragma once

#include "app/ui/factory.h"

namespace lavra::ui {

// The windows that bring data in from elsewhere or take it out, built by name through the window registry.
QWidget* criaFrmImportaAnalise(Session& session, WindowRegistry& windows);
QWidget* criaFrmRelat(Session& session, WindowRegistry& windows);
QWidget* criaFrmCopiaBd(Session& session, WindowRegistry& windows);
QWidget* criaFrmAtualiza(Session& session, WindowRegistry& windows);

} // namespace lavra::ui
