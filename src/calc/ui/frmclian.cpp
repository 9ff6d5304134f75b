#include "frmclian.h"

#include "app/events.h"
#include "app/navigation.h"
#include "app/session.h"
#include "app/ui/buttons.h"
#include "app/ui/messages.h"
#include "app/ui/widgets.h"
#include "app/ui/windowregistry.h"
#include "app/windownames.h"
#include "calc/ui/windows.h"
#include "registers/analysis.h"
#include "registers/ui/clientgrid.h"
#include "store/storeerror.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace lavra::ui {

namespace {

const QString kModoAnalise = QStringLiteral("Analise");
const QString kModoCalcular = QStringLiteral("Calcular");

} // namespace

FrmCliAn::FrmCliAn(Session& session, WindowRegistry& windows, std::optional<QString> modoFixo, QWidget* parent)
    : QWidget(parent, Qt::Window), m_session(session), m_windows(windows), m_modoFixo(std::move(modoFixo))
{
    setObjectName(janela::kCliAn);
    setWindowTitle(QStringLiteral("Clientes e Análises"));
    auto* layout = new QVBoxLayout(this);

    auto* lblBusca = new QLabel(QStringLiteral("Digite as iniciais do cliente para iniciar a busca"), this);
    lblBusca->setObjectName(QStringLiteral("Label1"));
    m_txtCli = new QLineEdit(this);
    m_txtCli->setObjectName(QStringLiteral("txtCli"));
    m_txtCli->setMaximumWidth(320);
    lblBusca->setBuddy(m_txtCli);
    layout->addWidget(lblBusca);
    layout->addWidget(m_txtCli);

    auto* meio = new QHBoxLayout;
    m_flxCli = criaGradeClientes(this);
    meio->addWidget(m_flxCli, 1);
    auto* direita = new QVBoxLayout;
    auto* lblAna = new QLabel(QStringLiteral("Análises cadastradas (Fazenda/Gleba/Data)"), this);
    lblAna->setObjectName(QStringLiteral("Label2"));
    m_lstAna = new QListWidget(this);
    m_lstAna->setObjectName(QStringLiteral("lstAna"));
    m_lstAna->setMinimumWidth(lblAna->sizeHint().width());
    lblAna->setBuddy(m_lstAna);
    direita->addWidget(lblAna);
    direita->addWidget(m_lstAna, 1);
    meio->addLayout(direita);
    layout->addLayout(meio, 1);

    const LinhaPasso botoes = adicionaBotoesPasso(layout, this,
        {{}, {QStringLiteral("cmdCancela"), QStringLiteral("Cancelar")}, {},
         {QStringLiteral("cmdContinua"), QStringLiteral("Prosseguir >>")}});
    QPushButton* cmdContinua = botoes.prossegue;
    QPushButton* cmdCancela = botoes.cancela;
    setTabOrder(m_txtCli, m_flxCli);
    setTabOrder(m_flxCli, m_lstAna);
    setTabOrder(m_lstAna, cmdContinua);
    setTabOrder(cmdContinua, cmdCancela);

    enterAcionaPadrao(this);
    connect(m_txtCli, &QLineEdit::textChanged, this, &FrmCliAn::busca);
    connect(m_flxCli, &QTableWidget::currentCellChanged, this,
            [this](int linha, int, int anterior, int) {
                if (linha != anterior)
                    preencheAnalises();
            });
    connect(m_lstAna, &QListWidget::itemDoubleClicked, this, &FrmCliAn::continua);
    connect(cmdContinua, &QPushButton::clicked, this, &FrmCliAn::continua);
    connect(cmdCancela, &QPushButton::clicked, this, &FrmCliAn::cancela);

    const bool temClientes = carregaGradeClientes(this, m_session, m_flxCli);
    if (temClientes)
        m_flxCli->setCurrentCell(0, 0);
    else
        preencheAnalises();
    resize(sizeHint().width(), 420);
}

QString FrmCliAn::marcaEscolha() const
{
    // No separator between the two: row 1 at position 12 reads as row 11 at position 2.
    const int linha = m_flxCli->currentRow() < 0 ? 0 : m_flxCli->currentRow() + 1;
    return QString::number(linha) + QString::number(linhaEscolhida(m_lstAna));
}

void FrmCliAn::showEvent(QShowEvent* event)
{
    m_marca = marcaEscolha();
    if (m_session.ModoEscolha == kModoCalcular || m_session.ModoEscolha == kModoAnalise)
        m_modoAoMostrar = m_session.ModoEscolha;
    QWidget::showEvent(event);
}

void FrmCliAn::closeEvent(QCloseEvent* event)
{
    // Closed by its box while choosing for the register, it gives the register its buttons back
    // as Cancelar would.
    if (!m_entregue && modo() == kModoAnalise) {
        emit m_session.eventos.escolhaDeAnaliseCancelada();
    }
    m_entregue = true;
    QWidget::closeEvent(event);
}

void FrmCliAn::preencheAnalises()
{
    listaAnalisesDoCliente(this, m_session, m_flxCli, m_lstAna);
}

void FrmCliAn::busca(const QString& texto)
{
    buscaERelista(m_flxCli, texto, [this]() { preencheAnalises(); });
}

void FrmCliAn::continua()
{
    const QString analise = textoEscolhido(m_lstAna);
    const QTableWidgetItem* cliente = m_flxCli->currentRow() < 0 ? nullptr : m_flxCli->item(m_flxCli->currentRow(), 0);
    if (analise.isEmpty() || !cliente) {
        aviso(this, QStringLiteral("Selecione cliente e análise!"));
        return;
    }
    const QString modo = this->modo();
    if (modo != kModoCalcular && modo != kModoAnalise) {
        // A chart reads the analysis into a place of its own, leaving a calculation in progress
        // with the client and analysis it has.
        emit m_session.eventos.graficoPedido(modo, analise, this);
        return;
    }
    m_session.NomeCliente = cliente->text();
    m_session.CodAnalise = analise;

    if (modo == kModoCalcular) {
        if (!carregaEscolhida())
            return;
        if (marcaEscolha() != m_marca)
            FechaAposEscolha(m_session, m_windows);
        m_windows.show(janela::kGrupCult);
    } else {
        hide();
        m_entregue = true;
        emit m_session.eventos.analiseEscolhida();
        close();
    }
}

QString FrmCliAn::modo() const
{
    if (m_modoFixo)
        return *m_modoFixo;
    // The charts set a mode of their own as they open their selection; this window, shown for a
    // calculation or the register and hidden meanwhile, keeps the use it was shown for.
    const QString& modo = m_session.ModoEscolha;
    if (modo != kModoCalcular && modo != kModoAnalise && m_modoAoMostrar)
        return *m_modoAoMostrar;
    return modo;
}

bool FrmCliAn::carregaEscolhida()
{
    hide();
    try {
        CarregaAnalise(m_session, m_session.CodAnalise);
        return true;
    } catch (const StoreError& error) {
        // The analysis went away while the window stood open: stay here for another choice.
        erroBanco(this, error);
        show();
        return false;
    }
}

void FrmCliAn::cancela()
{
    const QString modo = this->modo();
    if (modo == kModoAnalise) {
        close();
    } else if (modo == kModoCalcular) {
        FechaJanelas(m_session, m_windows, true);
    } else {
        // Choosing for a chart ends the charts alone; a calculation in progress stays open.
        close();
        FechaJanela(m_session, m_windows, janela::kGraficos);
    }
}

QWidget* criaFrmCliAn(Session& session, WindowRegistry& windows)
{
    return new FrmCliAn(session, windows);
}

} // namespace lavra::ui
