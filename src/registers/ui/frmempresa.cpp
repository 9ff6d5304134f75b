#include "windows.h"

#include <QWidget>

namespace lavra::ui {

QWidget* criaFrmEmpresa(Session&, WindowRegistry&) { return new QWidget; }

} // namespace lavra::ui
