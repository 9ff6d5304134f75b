#include "report/ui/windows.h"

#include <QWidget>

namespace lavra::ui {

QWidget* criaRptLdForml(Session&, WindowRegistry&) { return nullptr; }
QWidget* criaRptLdFormlacao(Session&, WindowRegistry&) { return nullptr; }
QWidget* criaRptLdFlorest(Session&, WindowRegistry&) { return nullptr; }

} // namespace lavra::ui
