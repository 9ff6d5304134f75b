#include "chartwindows.h"

#include "app/navigation.h"
#include "app/session.h"
#include "app/ui/messages.h"
#include "app/ui/widgets.h"
#include "app/ui/windowregistry.h"
#include "app/windownames.h"
#include "charts/choice.h"
#include "charts/shares.h"
#include "chartview.h"
#include "chartwindow.h"
#include "report/ui/recochoice.h"
#include "store/storeerror.h"

#include <QAction>
#include <QChartView>
#include <QCloseEvent>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace lavra::ui {

namespace {

// A pie of shares: the CEC of an analysis or the cost of a recommendation. Closing it brings
// back the Fertigraph it was opened from, if any.
class JanelaPizza final : public JanelaGrafico {
public:
    JanelaPizza(Session& session, WindowRegistry& windows, const QString& titulo, const GraficoPizza& pizza,
                const QString& nomeVista, ImpressaoGrafico impressao)
        : JanelaGrafico(session, windows, titulo)
    {
        adicionaImprimir(QStringLiteral("print"));
        adicionaCopiarESalvar();
        m_outras = adicionaMenu(QStringLiteral("outrasanalises"), QStringLiteral("Outras análises"));
        QChartView* vista = poeGrafico(criaGrafico(pizza), nomeVista, std::move(impressao));
        // Tall enough for every line of the legend: a forest plan has thirteen.
        const int linhas = static_cast<int>(pizza.fatias.size()) + (pizza.nota.isEmpty() ? 0 : 1);
        vista->setMinimumHeight(std::max(vista->minimumHeight(), 150 + linhas * (fontMetrics().height() + 8)));
        m_layout->addWidget(vista);
    }

    QAction* outras() const { return m_outras; }

protected:
    void closeEvent(QCloseEvent* event) override
    {
        FechaGraficoDoFertigrafico(m_session, m_windows);
        event->accept();
    }

private:
    QAction* m_outras = nullptr;
};

JanelaPizza* criaPizza(Session& session, WindowRegistry& windows, const Pizza& pizza, const QString& titulo,
                       const QString& nomeVista, ImpressaoGrafico impressao)
{
    if (!pizza.grafico) {
        if (pizza.recusa)
            mostra(nullptr, *pizza.recusa);
        return nullptr;
    }
    return new JanelaPizza(session, windows, titulo, *pizza.grafico, nomeVista, std::move(impressao));
}

// The saved recommendations of a client's analysis, for the cost chart.
class FrmChamaGrafCusto final : public EscolhaRecomendacao {
public:
    FrmChamaGrafCusto(Session& session, WindowRegistry& windows) : EscolhaRecomendacao(session, windows)
    {
        const QList<QPushButton*> botoes = adicionaBotoes({{QStringLiteral("cmdContinua"), QStringLiteral("Mostrar Gráfico")},
                                                           {QStringLiteral("cmdCancela"), QStringLiteral("Fechar")}});
        connect(m_lstReco, &QListWidget::itemDoubleClicked, this, &FrmChamaGrafCusto::continua);
        connect(botoes[0], &QPushButton::clicked, this, &FrmChamaGrafCusto::continua);
        connect(botoes[1], &QPushButton::clicked, this, &QWidget::close);
        resize(sizeHint().width(), 520);
    }

private:
    void continua()
    {
        const auto chave = recomendacaoEscolhida();
        if (!chave)
            return;
        try {
            EscolheRecomendacaoDoGrafico(m_session, *tipoEscolhido(), analiseEscolhida(), *chave);
        } catch (const StoreError& error) {
            erroBanco(this, error);
            return;
        }
        // A chart is worked out as it opens: one already open gives way to the new choice.
        ReabreJanela(m_session, m_windows, janela::kOcupaCusto, QStringLiteral("reabre"));
    }
};

} // namespace

QWidget* criaFrmOcupaCTC(Session& session, WindowRegistry& windows)
{
    JanelaPizza* janela = criaPizza(session, windows, OcupacaoCTC(AnaliseDoGrafico(session)), kTituloOcupaCTC,
                                    QStringLiteral("chartCTC"), ImpressaoOcupacaoCTC());
    if (!janela)
        return nullptr;
    // Opened from the Fertigraph, it goes back there only by being closed.
    janela->outras()->setEnabled(!session.CTCDoFertigrafico);
    QObject::connect(janela->outras(), &QAction::triggered, janela, [&session, &windows]() {
        OutrasAnalises(session, windows, kModoOcupaCTC, janela::kOcupaCTC);
    });
    return janela;
}

QWidget* criaFrmOcupaCusto(Session& session, WindowRegistry& windows)
{
    JanelaPizza* janela = criaPizza(session, windows, ParticipacaoDoGrafico(session), kTituloOcupaCusto,
                                    QStringLiteral("chartCusto"), ImpressaoParticipacaoCusto());
    if (!janela)
        return nullptr;
    QObject::connect(janela->outras(), &QAction::triggered, janela,
                     [&session, &windows]() { OutrasRecomendacoes(session, windows); });
    return janela;
}

QWidget* criaFrmChamaGrafCusto(Session& session, WindowRegistry& windows)
{
    return new FrmChamaGrafCusto(session, windows);
}

} // namespace lavra::ui
