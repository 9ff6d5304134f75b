#include "windows.h"

#include <QWidget>

namespace lavra::ui {

QWidget* criaFrmCadCli(Session&, WindowRegistry&) { return new QWidget; }

} // namespace lavra::ui
