#include "windows.h"

#include <QWidget>

namespace lavra::ui {

QWidget* criaFrmTecResp(Session&, WindowRegistry&) { return new QWidget; }

} // namespace lavra::ui
