#pragma once

class QWidget;

namespace lavra {
struct Session;
}

namespace lavra::ui {

class WindowRegistry;

// The plan steps: commercial formulas, the nitrogen split and the final step that saves.
QWidget* criaFrmNPK(Session& session, WindowRegistry& windows);
QWidget* criaFrmParcelaN(Session& session, WindowRegistry& windows);
QWidget* criaFrmFinalCalculo(Session& session, WindowRegistry& windows);

} // namespace lavra::ui
