#include "registers/ui/windows.h"

#include <QWidget>

namespace lavra::ui {

QWidget* criaFrmCliente(Session&, WindowRegistry&) { return new QWidget; }

} // namespace lavra::ui
