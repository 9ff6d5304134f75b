#include "planstep.h"

#include "app/navigation.h"
#include "app/windownames.h"
#include "app/session.h"
#include "app/ui/messages.h"
#include "app/ui/windowregistry.h"
#include "calc/cropgroups.h"
#include "plan/formulas.h"

namespace lavra::ui {

QWidget* mostraJanela(QWidget* parent, WindowRegistry& windows, const QString& nome)
{
    QWidget* janela = windows.show(nome);
    if (!janela)
        informacao(parent, kMsgIndisponivel);
    return janela;
}

void retornaDaBase(QWidget* passo, Session& session, WindowRegistry& windows, const QString& nome)
{
    if (session.Grupo == grupo::Florestais) {
        FechaJanela(session, windows, nome);
        return;
    }
    const GrupoCultura* grupo = grupoCultura(session.NomeGrupo);
    if (!grupo) {
        informacao(passo, kMsgIndisponivel);
        return;
    }
    if (mostraJanela(passo, windows, grupo->janela))
        passo->hide();
}

void cancelaDaBase(Session& session, WindowRegistry& windows, const QString& nome)
{
    if (session.Grupo == grupo::Florestais)
        FechaJanela(session, windows, nome);
    else
        FechaJanelas(session, windows, true);
}

void segueDaBase(QWidget* passo, Session& session, WindowRegistry& windows, const QString& nome,
    const DestinoFormula& destino, const std::function<QList<QStringList>()>& linhasFlorest)
{
    if (destino.florestal) {
        if (windows.isRegistered(janela::kNPKFlorest))
            emit session.eventos.etapaPreenchida(session.EtapaFlorest, linhasFlorest());
        else
            informacao(passo, kMsgIndisponivel);
        FechaJanela(session, windows, nome);
        return;
    }
    if (destino.fechaParcelamento)
        FechaJanela(session, windows, janela::kParcelaN);
    if (mostraJanela(passo, windows, janela::kParcelaN))
        passo->hide();
}

} // namespace lavra::ui
