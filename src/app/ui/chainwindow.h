#pragma once

#include <QWidget>

class QMenuBar;

namespace lavra {
struct Session;
}

namespace lavra::ui {

class WindowRegistry;

// A window of the calculation chain. While the session's lock is on, its close box does
// nothing: the chain is left only through its buttons, which use the closing routines.
class ChainWindow : public QWidget {
    Q_OBJECT

public:
    ChainWindow(Session& session, WindowRegistry& windows, QWidget* parent = nullptr);

protected:
    void closeEvent(QCloseEvent* event) override;

    Session& m_session;
    WindowRegistry& m_windows;
};

// The Fertigraph of the analysis of the calculation in progress.
void abreFertigrafico(Session& session, WindowRegistry& windows);

// The menus of the calculation steps: "Fertigráfico" (mnuFert) and "Calculadora" (mnuCalc).
QMenuBar* criaMenusCalculo(QWidget* janela, Session& session, WindowRegistry& windows);

} // namespace lavra::ui
