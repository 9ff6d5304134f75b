#include "calc/ui/windows.h"

#include <QWidget>

namespace lavra::ui {

QWidget* criaFrmAjusta(Session&, WindowRegistry&) { return nullptr; }

} // namespace lavra::ui
