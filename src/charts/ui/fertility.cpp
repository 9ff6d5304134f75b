#include "chartwindows.h"

#include "app/navigation.h"
#include "app/session.h"
#include "app/ui/messages.h"
#include "app/ui/widgets.h"
#include "app/ui/windowregistry.h"
#include "app/windownames.h"
#include "charts/bands.h"
#include "charts/choice.h"
#include "chartview.h"
#include "chartwindow.h"
#include "store/storeerror.h"

#include <QAction>
#include <QChartView>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QTableWidget>
#include <QVBoxLayout>

namespace lavra::ui {

namespace {

// The Fertigraph: nine bars on the band scale, and the values of the analysis beside them.
class FrmChart final : public JanelaGrafico {
public:
    FrmChart(Session& session, WindowRegistry& windows, const Fertigrafico& fertigrafico, QVector<QVariant> analise)
        : JanelaGrafico(session, windows, QStringLiteral("Fertigráfico")), m_analise(std::move(analise))
    {
        QAction* ctc = adicionaMenu(QStringLiteral("Análise"), QStringLiteral("     Ocupação      da CTC   "));
        connect(ctc, &QAction::triggered, this, &FrmChart::ocupacaoDaCtc);
        adicionaImprimir(QStringLiteral("print"));
        adicionaCopiarESalvar();
        QAction* outras = adicionaMenu(QStringLiteral("outrasanalises"), QStringLiteral("Outras análises"));
        connect(outras, &QAction::triggered, this, [this]() {
            OutrasAnalises(m_session, m_windows, kModoFertigrafico, janela::kChart);
        });

        auto* corpo = new QHBoxLayout;
        corpo->addWidget(poeGrafico(criaGrafico(fertigrafico.grafico), QStringLiteral("chartFertig"), ImpressaoFertigrafico()), 1);
        corpo->addWidget(criaTabela(fertigrafico.tabela), 0, Qt::AlignTop);
        m_layout->addLayout(corpo);
    }

private:
    QTableWidget* criaTabela(const QList<QStringList>& linhas)
    {
        auto* tabela = new QTableWidget(static_cast<int>(linhas.size()) - 1, 2, this);
        tabela->setObjectName(QStringLiteral("flxTab"));
        tabela->setHorizontalHeaderLabels(linhas.value(0));
        tabela->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        tabela->verticalHeader()->hide();
        tabela->setEditTriggers(QAbstractItemView::NoEditTriggers);
        tabela->setSelectionMode(QAbstractItemView::NoSelection);
        tabela->setFocusPolicy(Qt::NoFocus);
        for (int linha = 1; linha < linhas.size(); ++linha) {
            for (int coluna = 0; coluna < 2; ++coluna) {
                auto* celula = new QTableWidgetItem(linhas[linha].value(coluna));
                celula->setTextAlignment(Qt::AlignLeft | Qt::AlignVCenter);
                tabela->setItem(linha - 1, coluna, celula);
            }
        }
        // The widths of the grid, never narrower than what the cells hold.
        tabela->resizeColumnsToContents();
        const int larguras[] = {twips(this, 1300), twips(this, 700)};
        int total = tabela->frameWidth() * 2;
        for (int coluna = 0; coluna < 2; ++coluna) {
            tabela->setColumnWidth(coluna, std::max(larguras[coluna], tabela->columnWidth(coluna) + 8));
            total += tabela->columnWidth(coluna);
        }
        tabela->setFixedWidth(total);
        tabela->resizeRowsToContents();
        int altura = tabela->horizontalHeader()->height() + tabela->frameWidth() * 2;
        for (int linha = 0; linha < tabela->rowCount(); ++linha)
            altura += tabela->rowHeight(linha);
        tabela->setFixedHeight(altura);
        return tabela;
    }

    void ocupacaoDaCtc()
    {
        // A CEC chart already open from here goes without bringing this one back.
        m_session.CTCDoFertigrafico = false;
        FechaJanela(m_session, m_windows, janela::kOcupaCTC);
        m_session.Grafico.analise = m_analise;
        m_session.GrafAvulso = 1;
        m_session.CTCDoFertigrafico = true;
        if (!m_windows.show(janela::kOcupaCTC))
            m_session.CTCDoFertigrafico = false;
    }

    QVector<QVariant> m_analise;
};

// The fertility of one field through time: the nine indicators over the dates of its analyses.
class FrmEvolFert final : public JanelaGrafico {
public:
    FrmEvolFert(Session& session, WindowRegistry& windows, const GraficoBarras& evolucao)
        : JanelaGrafico(session, windows, QStringLiteral("Evolução da fertilidade"))
    {
        adicionaImprimir(QStringLiteral("mnuImpri"));
        adicionaCopiarESalvar();
        m_layout->addWidget(poeGrafico(criaGrafico(evolucao), QStringLiteral("chartEvolf"), ImpressaoEvolucao()));
    }

protected:
    void closeEvent(QCloseEvent* event) override
    {
        // The selection it came from waits hidden; it goes too.
        FechaJanela(m_session, m_windows, janela::kChamaGraf);
        event->accept();
    }
};

} // namespace

QWidget* criaFrmChart(Session& session, WindowRegistry& windows)
{
    const QVector<QVariant> analise = AnaliseDoGrafico(session);
    if (analise.isEmpty()) {
        aviso(nullptr, QStringLiteral("Selecione cliente e análise!"));
        return nullptr;
    }
    try {
        const TabelaGraf graf = TabelaGraf::le(session.db);
        return new FrmChart(session, windows, MontaFertigrafico(graf, analise), analise);
    } catch (const StoreError& error) {
        erroBanco(nullptr, error);
        return nullptr;
    }
}

QWidget* criaFrmEvolFert(Session& session, WindowRegistry& windows)
{
    try {
        const TabelaGraf graf = TabelaGraf::le(session.db);
        return new FrmEvolFert(session, windows, MontaEvolucao(graf, session.EvolAnalises));
    } catch (const StoreError& error) {
        erroBanco(nullptr, error);
        return nullptr;
    }
}

} // namespace lavra::ui
