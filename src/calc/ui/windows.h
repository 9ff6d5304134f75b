#pragma once

class QWidget;

namespace lavra {
struct Session;
}

namespace lavra::ui {

class WindowRegistry;

// The selection of client and analysis, shared by the calculation, the analysis register and
// the charts.
QWidget* criaFrmCliAn(Session& session, WindowRegistry& windows);

} // namespace lavra::ui
