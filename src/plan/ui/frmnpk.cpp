#include "plan/ui/windows.h"

#include <QWidget>

namespace lavra::ui {

QWidget* criaFrmNPK(Session&, WindowRegistry&) { return nullptr; }

} // namespace lavra::ui
