#include "calc/ui/windows.h"

#include <QWidget>

namespace lavra::ui {

QWidget* criaFrmCalagem(Session&, WindowRegistry&) { return nullptr; }

} // namespace lavra::ui
