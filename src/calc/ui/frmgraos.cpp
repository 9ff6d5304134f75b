#include "calc/ui/windows.h"

#include <QWidget>

namespace lavra::ui {

QWidget* criaFrmGraos(Session&, WindowRegistry&) { return nullptr; }

} // namespace lavra::ui
