#include "report/ui/windows.h"

#include <QWidget>

namespace lavra::ui {

QWidget* criaFrmObsLaudo(Session&, WindowRegistry&) { return nullptr; }

} // namespace lavra::ui
