#pragma once

#include "app/ui/factory.h"

namespace lavra::ui {

// The windows that bring data in from elsewhere, built by name through the window registry.
QWidget* criaFrmImportaAnalise(Session& session, WindowRegistry& windows);

} // namespace lavra::ui
