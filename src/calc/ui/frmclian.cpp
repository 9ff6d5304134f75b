#include "calc/ui/windows.h"

#include <QWidget>

namespace lavra::ui {

QWidget* criaFrmCliAn(Session&, WindowRegistry&) { return new QWidget; }

} // namespace lavra::ui
