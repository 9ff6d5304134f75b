#include "frmcliente.h"

#include "app/session.h"
#include "app/ui/buttons.h"
#include "app/ui/messages.h"
#include "app/ui/widgets.h"
#include "app/ui/windowregistry.h"
#include "registers/analysis.h"
#include "registers/ui/windows.h"
#include "store/storeerror.h"
#include "app/windownames.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>
#include <QTableWidget>
#include <QVBoxLayout>

namespace lavra::ui {

QTableWidget* criaGradeClientes(QWidget* parent)
{
    auto* grade = new QTableWidget(parent);
    grade->setObjectName(QStringLiteral("flxCli"));
    grade->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grade->setSelectionBehavior(QAbstractItemView::SelectRows);
    grade->setSelectionMode(QAbstractItemView::SingleSelection);
    grade->setAlternatingRowColors(true);
    grade->setWordWrap(false);
    grade->verticalHeader()->hide();
    grade->verticalHeader()->setDefaultSectionSize(grade->fontMetrics().height() + 8);
    grade->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    return grade;
}

void preencheGradeClientes(QTableWidget* grade, const GradeClientes& clientes)
{
    grade->clear();
    grade->setColumnCount(static_cast<int>(clientes.colunas.size()));
    grade->setHorizontalHeaderLabels(clientes.colunas);
    grade->setRowCount(static_cast<int>(clientes.linhas.size()));
    for (int linha = 0; linha < clientes.linhas.size(); ++linha) {
        const QStringList& celulas = clientes.linhas[linha];
        for (int coluna = 0; coluna < celulas.size(); ++coluna) {
            auto* item = new QTableWidgetItem(celulas[coluna]);
            item->setToolTip(celulas[coluna]);
            grade->setItem(linha, coluna, item);
        }
    }
}

int buscaNaGrade(QTableWidget* grade, const QString& texto)
{
    QStringList nomes;
    for (int linha = 0; linha < grade->rowCount(); ++linha)
        nomes << (grade->item(linha, 0) ? grade->item(linha, 0)->text() : QString());
    const int achada = BuscaCliente(nomes, texto);
    if (achada >= 0) {
        grade->setCurrentCell(achada, 0);
        grade->scrollToItem(grade->item(achada, 0), QAbstractItemView::PositionAtTop);
    }
    return achada;
}

bool carregaGradeClientes(QWidget* janela, Session& session, QTableWidget* grade)
{
    try {
        preencheGradeClientes(grade, LeClientes(session.db));
    } catch (const StoreError& error) {
        erroBanco(janela, error);
    }
    const int largura = 1700 * janela->logicalDpiX() / 1440;
    for (int coluna = 0; coluna < grade->columnCount(); ++coluna)
        grade->setColumnWidth(coluna, largura);
    grade->horizontalHeader()->setStretchLastSection(true);
    // All five columns in view, with room for the vertical scroll bar.
    grade->setMinimumWidth(5 * largura + 2 * grade->frameWidth()
                           + grade->style()->pixelMetric(QStyle::PM_ScrollBarExtent));
    return grade->rowCount() > 0;
}

void buscaERelista(QTableWidget* grade, const QString& texto, const std::function<void()>& relista)
{
    const int anterior = grade->currentRow();
    const int achada = buscaNaGrade(grade, texto);
    // A new row refills the list through the grid's own signal.
    if (achada >= 0 && achada == anterior)
        relista();
}

void listaAnalisesDoCliente(QWidget* janela, Session& session, const QTableWidget* grade, QListWidget* lista)
{
    lista->clear();
    const QTableWidgetItem* nome = grade->currentRow() < 0 ? nullptr : grade->item(grade->currentRow(), 0);
    if (!nome)
        return;
    try {
        lista->addItems(AnalisesDoCliente(session.db, nome->text()));
        semEscolhaInicial(lista);
    } catch (const StoreError& error) {
        erroBanco(janela, error);
    }
}

FrmCliente::FrmCliente(Session& session, WindowRegistry& windows, QWidget* parent)
    : QWidget(parent, Qt::Window), m_session(session), m_windows(windows)
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
    if (QWidget* cadastro = m_windows.window(janela::kCadAnalise)) {
        if (auto* txtCliente = cadastro->findChild<QLineEdit*>(QStringLiteral("txtCliente")))
            txtCliente->setText(m_session.NomeCliente);
    }
    close();
}

QWidget* criaFrmCliente(Session& session, WindowRegistry& windows)
{
    return new FrmCliente(session, windows);
}

} // namespace lavra::ui
