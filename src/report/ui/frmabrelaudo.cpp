#include "frmabrelaudo.h"

#include "app/session.h"
#include "app/ui/buttons.h"
#include "app/ui/messages.h"
#include "app/ui/widgets.h"
#include "app/ui/windowregistry.h"
#include "app/windownames.h"
#include "base/outcome.h"
#include "registers/analysis.h"
#include "registers/ui/clientgrid.h"
#include "report/saved.h"
#include "report/ui/windows.h"
#include "store/storeerror.h"

#include <QButtonGroup>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace lavra::ui {

FrmAbreLaudo::FrmAbreLaudo(Session& session, WindowRegistry& windows, QWidget* parent)
    : EscolhaRecomendacao(session, windows, parent)
{
    setObjectName(janela::kAbreLaudo);
    const QList<QPushButton*> botoes = adicionaBotoes({{QStringLiteral("cmdContinua"), QStringLiteral("Abrir")},
                                                       {QStringLiteral("cmdDeleta"), QStringLiteral("Excluir")},
                                                       {QStringLiteral("cmdCancela"), QStringLiteral("Fechar")}});
    connect(m_lstReco, &QListWidget::itemDoubleClicked, this, &FrmAbreLaudo::abre);
    connect(botoes[0], &QPushButton::clicked, this, &FrmAbreLaudo::abre);
    connect(botoes[1], &QPushButton::clicked, this, &FrmAbreLaudo::exclui);
    connect(botoes[2], &QPushButton::clicked, this, &QWidget::close);
    resize(sizeHint().width(), 520);
}

void FrmAbreLaudo::abre()
{
    const auto chave = recomendacaoEscolhida();
    if (!chave)
        return;
    const QString codAnalise = analiseEscolhida();
    const QString janela = report::definicao(*tipoEscolhido()).janela;
    hide();
    try {
        CarregaAnalise(m_session, codAnalise);
    } catch (const StoreError& error) {
        // The analysis went away while this window stood open: stay for another choice.
        erroBanco(this, error);
        show();
        return;
    }
    m_session.LaudoAnalise = codAnalise;
    m_session.LaudoCultivo = *chave;
    // A report of the same layout still open would only come to the front with its old row.
    m_windows.closeWindow(janela);
    m_windows.show(janela);
    close();
}

void FrmAbreLaudo::exclui()
{
    const auto chave = recomendacaoEscolhida();
    if (!chave)
        return;
    const QString codAnalise = analiseEscolhida();
    m_session.TabelaReco = report::definicao(*tipoEscolhido()).tabela;
    try {
        const auto pergunta = report::PerguntaExclusao(m_session.db, m_session.TabelaReco, codAnalise, *chave);
        if (pergunta && mostra(this, *pergunta))
            report::ExcluiRecomendacao(m_session.db, m_session.TabelaReco, codAnalise, *chave);
    } catch (const StoreError& error) {
        // Nothing was deleted; reading the list again would only tell the failure twice.
        erroBanco(this, error);
        return;
    }
    // The same option stays on and its list is read again, with or without the row.
    preencheRecomendacoes();
}

QWidget* criaFrmAbreLaudo(Session& session, WindowRegistry& windows) { return new FrmAbreLaudo(session, windows); }

} // namespace lavra::ui
