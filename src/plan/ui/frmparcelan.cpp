#include "plan/ui/windows.h"

#include <QWidget>

namespace lavra::ui {

QWidget* criaFrmParcelaN(Session&, WindowRegistry&) { return nullptr; }

} // namespace lavra::ui
