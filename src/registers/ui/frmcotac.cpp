#include "windows.h"

#include <QWidget>

namespace lavra::ui {

QWidget* criaFrmCotac(Session&, WindowRegistry&) { return new QWidget; }

} // namespace lavra::ui
