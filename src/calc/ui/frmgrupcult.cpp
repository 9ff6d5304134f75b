#include "calc/ui/windows.h"

#include <QWidget>

namespace lavra::ui {

QWidget* criaFrmGrupCult(Session&, WindowRegistry&) { return nullptr; }

} // namespace lavra::ui
