#include "recochoice.h"

#include "app/session.h"
#include "app/ui/messages.h"
#include "app/ui/widgets.h"
#include "base/outcome.h"
#include "registers/ui/clientgrid.h"
#include "report/kinds.h"
#include "report/saved.h"
#include "store/storeerror.h"

#include <QButtonGroup>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace lavra::ui {

namespace {

const QString kMsgSelecione = QStringLiteral("Selecione cliente, análise e recomendação!");

} // namespace

EscolhaRecomendacao::EscolhaRecomendacao(Session& session, WindowRegistry& windows, QWidget* parent)
    : QWidget(parent, Qt::Window), m_session(session), m_windows(windows)
{
    setWindowTitle(QStringLiteral("Recomendações cadastradas"));
    enterAcionaPadrao(this);
    m_layout = new QVBoxLayout(this);
    QVBoxLayout* layout = m_layout;

    m_txtCli = new QLineEdit(this);
    m_txtCli->setObjectName(QStringLiteral("txtCli"));
    m_txtCli->setMaximumWidth(320);
    layout->addWidget(rotulo(QStringLiteral("Digite as iniciais do cliente para iniciar a busca"), m_txtCli, this,
                             QStringLiteral("Label1")));
    layout->addWidget(m_txtCli);

    auto* meio = new QHBoxLayout;
    m_flxCli = criaGradeClientes(this);
    meio->addWidget(m_flxCli, 1);
    auto* analises = new QVBoxLayout;
    m_lstAna = new QListWidget(this);
    m_lstAna->setObjectName(QStringLiteral("lstAna"));
    auto* lblAna =
        rotulo(QStringLiteral("Análises cadastradas (Fazenda/gleba/data)"), m_lstAna, this, QStringLiteral("Label2"));
    m_lstAna->setMinimumWidth(lblAna->sizeHint().width() + 20);
    analises->addWidget(lblAna);
    analises->addWidget(m_lstAna, 1);
    meio->addLayout(analises);
    layout->addLayout(meio, 3);

    auto* baixo = new QHBoxLayout;
    auto* quadro = new QGroupBox(this);
    quadro->setObjectName(QStringLiteral("Frame1"));
    auto* opcoes = new QVBoxLayout(quadro);
    m_opcoes = new QButtonGroup(this);
    const auto& laudos = report::definicoes();
    for (int n = 0; n < static_cast<int>(laudos.size()); ++n) {
        auto* opcao = new QRadioButton(laudos[n].titulo, quadro);
        opcao->setObjectName(QStringLiteral("Option") + QString::number(n + 1));
        m_opcoes->addButton(opcao, n);
        opcoes->addWidget(opcao);
    }
    baixo->addWidget(quadro, 0, Qt::AlignTop);
    auto* recomendacoes = new QVBoxLayout;
    m_lstReco = new QListWidget(this);
    m_lstReco->setObjectName(QStringLiteral("lstReco"));
    recomendacoes->addWidget(
        rotulo(QStringLiteral("Recomendações cadastradas  (cultura-cultivo-data de semeadura ou plantio)"), m_lstReco,
               this, QStringLiteral("Label3")));
    recomendacoes->addWidget(m_lstReco, 1);
    baixo->addLayout(recomendacoes, 1);
    layout->addLayout(baixo, 2);

    setTabOrder(m_txtCli, m_flxCli);
    setTabOrder(m_flxCli, m_lstAna);
    QWidget* anterior = m_lstAna;
    for (QAbstractButton* opcao : m_opcoes->buttons()) {
        setTabOrder(anterior, opcao);
        anterior = opcao;
    }
    setTabOrder(anterior, m_lstReco);

    connect(m_txtCli, &QLineEdit::textChanged, this, &EscolhaRecomendacao::busca);
    connect(m_flxCli, &QTableWidget::currentCellChanged, this, [this](int linha, int, int anterior, int) {
        if (linha != anterior)
            clienteMudou();
    });
    connect(m_lstAna, &QListWidget::itemSelectionChanged, this, [this]() {
        desligaOpcoes();
        m_lstReco->clear();
    });
    connect(m_opcoes, &QButtonGroup::idClicked, this, &EscolhaRecomendacao::preencheRecomendacoes);

    const bool temClientes = carregaGradeClientes(this, m_session, m_flxCli);
    if (temClientes)
        m_flxCli->setCurrentCell(0, 0);
    else
        clienteMudou();
}

QList<QPushButton*> EscolhaRecomendacao::adicionaBotoes(const QList<Botao>& botoes)
{
    const QList<QPushButton*> criados = ui::adicionaBotoes(m_layout, this, botoes);
    QWidget* anterior = m_lstReco;
    for (QPushButton* botao : criados) {
        setTabOrder(anterior, botao);
        anterior = botao;
    }
    return criados;
}

void EscolhaRecomendacao::desligaOpcoes()
{
    // An exclusive group always keeps one on; it lets go only while it is not exclusive.
    m_opcoes->setExclusive(false);
    for (QAbstractButton* opcao : m_opcoes->buttons())
        opcao->setChecked(false);
    m_opcoes->setExclusive(true);
}

void EscolhaRecomendacao::clienteMudou()
{
    desligaOpcoes();
    m_lstReco->clear();
    listaAnalisesDoCliente(this, m_session, m_flxCli, m_lstAna);
}

void EscolhaRecomendacao::busca(const QString& texto)
{
    buscaERelista(m_flxCli, texto, [this]() { clienteMudou(); });
}

std::optional<report::TipoLaudo> EscolhaRecomendacao::tipoEscolhido() const
{
    const int id = m_opcoes->checkedId();
    if (id < 0)
        return std::nullopt;
    return report::definicoes()[id].tipo;
}

QString EscolhaRecomendacao::analiseEscolhida() const
{
    return textoEscolhido(m_lstAna);
}

void EscolhaRecomendacao::preencheRecomendacoes()
{
    m_lstReco->clear();
    const auto tipo = tipoEscolhido();
    if (!tipo)
        return;
    // With no analysis chosen the empty code matches no saved row, so the list stays empty.
    try {
        m_lstReco->addItems(
            report::RecomendacoesDaAnalise(m_session.db, report::definicao(*tipo).tabela, analiseEscolhida()));
        semEscolhaInicial(m_lstReco);
    } catch (const StoreError& error) {
        erroBanco(this, error);
    }
}

std::optional<QString> EscolhaRecomendacao::recomendacaoEscolhida()
{
    const QList<QListWidgetItem*> escolhidas = m_lstReco->selectedItems();
    if (escolhidas.isEmpty() || !tipoEscolhido()) {
        mostra(this, Desfecho::aviso(kMsgSelecione));
        return std::nullopt;
    }
    return escolhidas.first()->text();
}

} // namespace lavra::ui
