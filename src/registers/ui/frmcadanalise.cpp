#include "registers/ui/windows.h"

#include <QWidget>

namespace lavra::ui {

QWidget* criaFrmCadAnalise(Session&, WindowRegistry&) { return new QWidget; }

} // namespace lavra::ui
