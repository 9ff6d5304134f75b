#include "windows.h"

#include <QWidget>

namespace lavra::ui {

QWidget* criaFrmCadCalc(Session&, WindowRegistry&) { return new QWidget; }

} // namespace lavra::ui
