#include "windows.h"

#include "app/navigation.h"
#include "app/session.h"
#include "app/ui/messages.h"
#include "app/ui/windowregistry.h"
#include "app/windownames.h"
#include "calc/ui/frmclian.h"
#include "charts/bands.h"
#include "charts/choice.h"
#include "chartwindows.h"
#include "frmgraficos.h"
#include "store/storeerror.h"

namespace lavra::ui {

namespace {

// A selection window chose an analysis for a chart: it is loaded apart from the calculation, the
// chart opens afresh, and the selection steps aside. On a refusal the selection stays.
void mostraGraficoPedido(Session& session, WindowRegistry& windows, const QString& modo, const QString& codigo,
                         QObject* origem)
{
    auto* janelaOrigem = qobject_cast<QWidget*>(origem);
    const QString nome = JanelaDoModo(modo);
    if (nome.isEmpty())
        return;
    try {
        if (modo == kModoEvolFert) {
            if (const Parada recusa = CarregaEvolucao(session, codigo)) {
                mostra(janelaOrigem, *recusa);
                return;
            }
        } else {
            EscolheAnaliseDoGrafico(session, codigo);
        }
    } catch (const StoreError& error) {
        erroBanco(janelaOrigem, error);
        return;
    }
    // The chart chosen here is nobody's way back to the Fertigraph.
    session.CTCDoFertigrafico = false;
    FechaJanela(session, windows, nome);
    if (windows.show(nome) && janelaOrigem)
        janelaOrigem->hide();
}

} // namespace

void registraGraficos(Session& session, WindowRegistry& windows)
{
    windows.registerWindow(janela::kGraficos, [&session, &windows]() { return new FrmGraficos(session, windows); });
    const auto dentro = [&session, &windows](const QString& nome, QWidget* (*fabrica)(Session&, WindowRegistry&)) {
        windows.registerInside(nome, janela::kGraficos, [&session, &windows, fabrica]() { return fabrica(session, windows); });
    };
    // The selection of the charts keeps the mode it was opened in, whatever else changes it later.
    windows.registerInside(janela::kChamaGraf, janela::kGraficos, [&session, &windows]() {
        return new FrmCliAn(session, windows, session.ModoEscolha);
    });
    dentro(janela::kChamaGrafCusto, criaFrmChamaGrafCusto);
    dentro(janela::kChart, criaFrmChart);
    dentro(janela::kEvolFert, criaFrmEvolFert);
    dentro(janela::kOcupaCTC, criaFrmOcupaCTC);
    dentro(janela::kOcupaCusto, criaFrmOcupaCusto);

    QObject::connect(&session.eventos, &Eventos::graficoPedido, &windows,
                     [&session, &windows](const QString& modo, const QString& codigo, QObject* origem) {
                         mostraGraficoPedido(session, windows, modo, codigo, origem);
                     });
}

} // namespace lavra::ui
