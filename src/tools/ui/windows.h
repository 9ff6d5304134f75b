#pragma once

#include "app/ui/factory.h"

namespace lavra::ui {

// The tools of the program, built by name through the window registry.
QWidget* criaFrmConvert(Session& session, WindowRegistry& windows);
// The manual's tables, to be checked and corrected.
QWidget* criaFrmTabelas(Session& session, WindowRegistry& windows);

} // namespace lavra::ui
