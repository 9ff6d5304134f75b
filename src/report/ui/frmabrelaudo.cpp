#include "report/ui/windows.h"

#include <QWidget>

namespace lavra::ui {

QWidget* criaFrmAbreLaudo(Session&, WindowRegistry&) { return nullptr; }

} // namespace lavra::ui
