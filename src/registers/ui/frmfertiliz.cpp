#include "windows.h"

#include <QWidget>

namespace lavra::ui {

QWidget* criaFrmFertiliz(Session&, WindowRegistry&) { return new QWidget; }

} // namespace lavra::ui
