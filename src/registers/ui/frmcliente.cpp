#include "frmcliente.h"

#include "app/session.h"
#include "app/ui/buttons.h"
#include "app/ui/messages.h"
#include "app/ui/widgets.h"
#include "app/ui/windowregistry.h"
#include "app/windownames.h"
#include "clientgrid.h"
#include "registers/analysis.h"
#include "registers/ui/windows.h"
#include "store/storeerror.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace lavra::ui {

FrmCliente::FrmCliente(Session& session, QWidget* parent) : QWidget(parent, Qt::Window), m_session(session)
{
    setObjectName(janela::kCliente);
    setWindowTitle(QStringLiteral("Clientes Cadastrados"));
    auto* layout = new QVBoxLayout(this);

    auto* lblBusca = new QLabel(
        QStringLiteral("Selecione um cliente ou digite as suas iniciais no campo abaixo para iniciar a busca"), this);
    lblBusca->setObjectName(QStringLiteral("Label1"));
    lblBusca->setWordWrap(true);
    layout->addWidget(lblBusca);
    m_txtCli = new QLineEdit(this);
    m_txtCli->setObjectName(QStringLiteral("txtCli"));
    lblBusca->setBuddy(m_txtCli);
    layout->addWidget(m_txtCli);

    m_flxCli = criaGradeClientes(this);
    layout->addWidget(m_flxCli, 1);

    const auto botoes = adicionaBotoes(layout, this, {{QStringLiteral("cmdContinua"), QStringLiteral("Continua")},
                                                      {QStringLiteral("cmdCancela"), QStringLiteral("Cancelar")}});
    QPushButton* continuaBotao = botoes[0];
    QPushButton* cancela = botoes[1];

    connect(m_txtCli, &QLineEdit::textChanged, this, [this](const QString& texto) { buscaNaGrade(m_flxCli, texto); });
    connect(m_flxCli, &QTableWidget::cellDoubleClicked, this, &FrmCliente::continua);
    connect(continuaBotao, &QPushButton::clicked, this, &FrmCliente::continua);
    connect(cancela, &QPushButton::clicked, this, &QWidget::close);

    try {
        preencheGradeClientes(m_flxCli, LeClientes(m_session.db));
    } catch (const StoreError& error) {
        erroBanco(this, error);
    }
    // Five columns of one width, sharing the grid.
    m_flxCli->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    if (m_flxCli->rowCount() > 0)
        m_flxCli->setCurrentCell(0, 0);
    resize(640, 380);
}

void FrmCliente::continua()
{
    if (m_flxCli->rowCount() == 0)
        return;
    const int linha = std::max(m_flxCli->currentRow(), 0);
    const QTableWidgetItem* nome = m_flxCli->item(linha, 0);
    m_session.NomeCliente = nome ? nome->text() : QString();
    emit m_session.eventos.clienteEscolhido(m_session.NomeCliente);
    close();
}

QWidget* criaFrmCliente(Session& session, WindowRegistry& /*windows*/)
{
    return new FrmCliente(session);
}

} // namespace lavra::ui
