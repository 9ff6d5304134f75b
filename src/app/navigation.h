#pragma once

#include "app/windownames.h"
#include "session.h"

#include <QString>
#include <QStringList>

namespace lavra {

// What the closing routines need of the windows: which are loaded (shown or hidden), how to
// close or show one by name, and the user's answer to the cancel question.
class WindowHost {
public:
    virtual ~WindowHost() = default;
    virtual QStringList openWindows() const = 0;
    virtual void closeWindow(const QString& name) = 0;
    virtual void showWindow(const QString& name) = 0;
    // "Está certo que quer cancelar?", Yes and No; true for Yes.
    virtual bool confirmCancel() = 0;
};

inline const QString kMainWindow = janela::kLavra;

// Closes every window but the main one; with the question on, No changes nothing. Returns
// whether the windows were closed.
bool FechaJanelas(Session& session, WindowHost& host, bool pergunta);
// A changed analysis or group invalidates all that follows the two selection windows.
void FechaAposEscolha(Session& session, WindowHost& host);
// Closes the plan windows and the final step, and no other.
void FechaPlano(Session& session, WindowHost& host);
void FechaJanela(Session& session, WindowHost& host, const QString& nome);
// With "reabre", closes the window if open and shows it afresh; any other acao does nothing.
void ReabreJanela(Session& session, WindowHost& host, const QString& nome, const QString& acao);

// Loads a saved recommendation into Dados: column k goes to slot k - 1. Throws StoreError.
void CarregaRecomendacao(Session& session, const QString& tabela, const QString& codAnalise,
                         const QString& codCultivo);
// The same row as a fresh set of slots, the slots past its columns at the integer 0.
QVector<QVariant> LeRecomendacao(const Store& db, const QString& tabela, const QString& codAnalise,
                                 const QString& codCultivo);

// The start of a calculation from the main window: closes the chain without asking, sets the
// choice mode and the plan kind, clears the costs and the slots. The caller then shows frmCliAn.
void IniciaCalculo(Session& session, WindowHost& host);

} // namespace lavra
