#pragma once

#include "store/manualtables.h"

#include <QList>
#include <QWidget>

#include <functional>
#include <optional>

class QAction;
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

// The rows of the manual's tables a step's last calculation read; nothing before the first.
using LinhasDoCalculo = std::optional<QList<manual::LinhaUsada>>;

// Runs a calculation and keeps in destino the rows it read, also when it refuses or fails: they
// are what it looked at.
template <typename Calculo>
auto anotandoLinhas(LinhasDoCalculo& destino, Calculo&& calculo) -> decltype(calculo())
{
    manual::LeiturasDoCalculo leituras;
    struct Guarda {
        LinhasDoCalculo& destino;
        const manual::LeiturasDoCalculo& leituras;
        ~Guarda() { destino = leituras.linhas(); }
    } guarda{destino, leituras};
    return calculo();
}

// Whether the last calculation read a row of that table, so that a correction of it makes the
// figures on the screen stale.
bool leuTabela(const LinhasDoCalculo& linhas, const QString& tabela);

// "Linhas da tabela usadas" (mnuLinhasUsadas) on a step's menu bar: the window of the tables opens
// on the rows of the last calculation, as linhas gives them when the command is chosen.
QAction* adicionaLinhasUsadas(QMenuBar* menus, QWidget* janela, Session& session, WindowRegistry& windows,
                              std::function<LinhasDoCalculo()> linhas);

} // namespace lavra::ui
