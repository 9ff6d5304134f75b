#include "frmparcelan.h"

#include "app/navigation.h"
#include "app/session.h"
#include "app/ui/buttons.h"
#include "app/ui/messages.h"
#include "app/ui/widgets.h"
#include "app/ui/windowregistry.h"
#include "app/windownames.h"
#include "calc/cropstep.h"
#include "plan/ui/planstep.h"
#include "plan/ui/windows.h"
#include "store/cursormodel.h"
#include "store/storeerror.h"

#include <QMenuBar>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

namespace lavra::ui {

namespace {

// Worked out by the step from the source and the share; the user does not type them.
QLineEdit* caixaNumero(QWidget* parent, const QString& nome)
{
    return caixaSomenteLeitura(parent, nome, QStringLiteral("00000,0000"));
}

// Parcels in use take the window's background, the others the face of a button.
void pintaParcela(QWidget* controle)
{
    QPalette paleta = controle->palette();
    paleta.setColor(QPalette::Disabled, QPalette::Base, paleta.color(QPalette::Active, QPalette::Button));
    controle->setPalette(paleta);
}

} // namespace

FrmParcelaN::FrmParcelaN(Session& session, WindowRegistry& windows, QWidget* parent)
    : ChainWindow(session, windows, parent)
    , m_necNCob(LeNecessidadeCobertura(session))
{
    setWindowTitle(QStringLiteral("Cálculo e Parcelamento da Adubação Nitrogenada em Cobertura"));
    auto* layout = new QVBoxLayout(this);
    layout->setMenuBar(criaMenusCalculo(this, m_session, m_windows));

    m_lblNec = new QLabel(TextoNecessidadeN(m_necNCob), this);
    m_lblNec->setObjectName(QStringLiteral("lblNec"));
    QFont destaque = m_lblNec->font();
    destaque.setBold(true);
    m_lblNec->setFont(destaque);
    layout->addWidget(m_lblNec);
    layout->addWidget(criaFontes(), 1);
    layout->addWidget(criaParcelas());

    const LinhaPasso botoes = adicionaBotoesPasso(layout, this,
        { {}, { QStringLiteral("cmdCancela"), QStringLiteral("Cancelar") },
            { QStringLiteral("cmdRetorna"), QStringLiteral("<< Retornar") },
            { QStringLiteral("cmdProssegue"), QStringLiteral("Prosseguir >>") } });
    QPushButton* cmdCancela = botoes.cancela;
    QPushButton* cmdRetorna = botoes.retorna;
    QPushButton* cmdProssegue = botoes.prossegue;

    QList<QWidget*> ordem = { m_dtGrid, m_chkTodas, m_cboNVezes };
    for (int i = 0; i < kMaxParcelas; ++i)
        ordem << m_cboPorc[i] << m_txtEpoca[i];
    ordem << cmdProssegue << cmdRetorna << cmdCancela;
    for (int i = 1; i < ordem.size(); ++i)
        setTabOrder(ordem[i - 1], ordem[i]);

    connect(cmdProssegue, &QPushButton::clicked, this, &FrmParcelaN::prosseguir);
    connect(cmdRetorna, &QPushButton::clicked, this, &FrmParcelaN::retornar);
    connect(cmdCancela, &QPushButton::clicked, this, &FrmParcelaN::cancelar);

    AbreTabelaN(false);
    defineParcelas(0);
    resize(sizeHint().width(), 620);
}

QWidget* FrmParcelaN::criaFontes()
{
    auto* quadro = new QWidget(this);
    auto* layout = new QVBoxLayout(quadro);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* titulo = new QLabel(
        QStringLiteral("Selecione uma fonte de nitrogênio dentre os fertilizantes abaixo"), quadro);
    titulo->setObjectName(QStringLiteral("lblFontes"));
    m_dtGrid = new QTableView(quadro);
    m_dtGrid->setObjectName(QStringLiteral("dtGrid"));
    m_dtGrid->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_dtGrid->setSelectionMode(QAbstractItemView::SingleSelection);
    m_dtGrid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_dtGrid->setAlternatingRowColors(true);
    m_dtGrid->verticalHeader()->hide();
    m_dtGrid->verticalHeader()->setDefaultSectionSize(m_dtGrid->fontMetrics().height() + 8);
    m_dtGrid->horizontalHeader()->setStretchLastSection(true);
    m_dtGrid->setMinimumHeight(170);
    titulo->setBuddy(m_dtGrid);
    layout->addWidget(titulo);
    layout->addWidget(m_dtGrid, 1);

    auto* abaixo = new QHBoxLayout;
    m_chkTodas = new QCheckBox(QStringLiteral("Exibir todos os fertilizantes cadastrados"), quadro);
    m_chkTodas->setObjectName(QStringLiteral("chkTodas"));
    abaixo->addWidget(m_chkTodas);
    abaixo->addStretch();
    m_txtFnt = caixaNumero(quadro, QStringLiteral("txtFnt"));
    m_txtCusto = caixaNumero(quadro, QStringLiteral("txtCusto"));
    auto* lblFnt = new QLabel(QStringLiteral("Fonte (kg/ha)"), quadro);
    auto* lblCusto = new QLabel(QStringLiteral("Custo (R$/ha)"), quadro);
    lblFnt->setBuddy(m_txtFnt);
    lblCusto->setBuddy(m_txtCusto);
    abaixo->addWidget(lblFnt);
    abaixo->addWidget(m_txtFnt);
    abaixo->addSpacing(16);
    abaixo->addWidget(lblCusto);
    abaixo->addWidget(m_txtCusto);
    layout->addLayout(abaixo);

    // Bound to the source's formula, as the grid's current row is: it never shows.
    m_txtCalcula = new QLineEdit(quadro);
    m_txtCalcula->setObjectName(QStringLiteral("txtCalcula"));
    m_txtCalcula->hide();

    connect(m_chkTodas, &QCheckBox::clicked, this, &FrmParcelaN::AbreTabelaN);
    return quadro;
}

QWidget* FrmParcelaN::criaParcelas()
{
    auto* quadro = new QGroupBox(this);
    quadro->setObjectName(QStringLiteral("fraParcelas"));
    auto* layout = new QVBoxLayout(quadro);

    auto* numero = new QHBoxLayout;
    auto* lblVezes = new QLabel(QStringLiteral("Selecione o número de parcelas de N em cobertura"), quadro);
    m_cboNVezes = new QComboBox(quadro);
    m_cboNVezes->setObjectName(QStringLiteral("cboN_Vezes"));
    m_cboNVezes->addItems(NumerosDeParcelas());
    m_cboNVezes->setCurrentIndex(0);
    lblVezes->setBuddy(m_cboNVezes);
    numero->addWidget(lblVezes);
    numero->addWidget(m_cboNVezes);
    numero->addStretch();
    layout->addLayout(numero);

    auto* lblPorc = new QLabel(
        QStringLiteral(
            "Escolha o percentual de cada parcela e informe a época de aplicação, ao lado do valor"),
        quadro);
    lblPorc->setObjectName(QStringLiteral("lblPorc"));
    lblPorc->setWordWrap(true);
    layout->addWidget(lblPorc);

    // Two columns of four parcels keep the window short.
    auto* grade = new QGridLayout;
    grade->setHorizontalSpacing(8);
    const QStringList percentuais = PercentuaisDeParcela();
    for (int i = 0; i < kMaxParcelas; ++i) {
        const int linha = i % 4;
        const int coluna = (i / 4) * 5;
        auto* lblParc = new QLabel(QString::number(i + 1) + QStringLiteral("ª"), quadro);
        lblParc->setObjectName(QStringLiteral("lblParc_%1").arg(i));
        m_cboPorc[i] = new QComboBox(quadro);
        m_cboPorc[i]->setObjectName(QStringLiteral("cboPorc_%1").arg(i));
        m_cboPorc[i]->addItems(percentuais);
        m_cboPorc[i]->setCurrentIndex(-1);
        m_cboPorc[i]->setMinimumContentsLength(5);
        m_txtDose[i] = caixaNumero(quadro, QStringLiteral("txtDose_%1").arg(i));
        m_txtEpoca[i] = new QLineEdit(quadro);
        m_txtEpoca[i]->setObjectName(QStringLiteral("txtEpoca_%1").arg(i));
        m_txtEpoca[i]->setMinimumWidth(
            m_txtEpoca[i]->fontMetrics().horizontalAdvance(QStringLiteral("Início do perfilhamento")));
        lblParc->setBuddy(m_cboPorc[i]);
        for (QWidget* controle :
            std::initializer_list<QWidget*> { m_cboPorc[i], m_txtDose[i], m_txtEpoca[i] })
            pintaParcela(controle);
        grade->addWidget(lblParc, linha, coluna);
        grade->addWidget(m_cboPorc[i], linha, coluna + 1);
        grade->addWidget(m_txtDose[i], linha, coluna + 2);
        grade->addWidget(m_txtEpoca[i], linha, coluna + 3);
        connect(m_cboPorc[i], &QComboBox::activated, this, [this, i]() { escolhePorcentagem(i); });
    }
    grade->setColumnMinimumWidth(4, 24);
    grade->setColumnStretch(3, 1);
    grade->setColumnStretch(8, 1);
    layout->addLayout(grade);

    connect(m_cboNVezes, &QComboBox::activated, this, &FrmParcelaN::defineParcelas);
    return quadro;
}

void FrmParcelaN::AbreTabelaN(bool todas)
{
    CursorModel* novo = nullptr;
    try {
        novo = new CursorModel(m_session.db.strConn, ConsultaFontes(todas), this);
        // The sources and prices the step opened with hold until chkTodas or a reopening, as
        // the rest of the session does.
        novo->setFollowsChanges(false);
    } catch (const StoreError& error) {
        erroBanco(this, error);
        return;
    }
    QItemSelectionModel* selecaoAntiga = m_dtGrid->selectionModel();
    CursorModel* antigo = m_fontes;
    m_fontes = novo;
    m_dtGrid->setModel(novo);
    delete selecaoAntiga;
    delete antigo;

    sincronizaGrade(m_dtGrid, novo, fonte::kNome, [this](const StoreError& error) { erroBanco(this, error); });
    connect(novo, &CursorModel::currentRowChanged, this, &FrmParcelaN::aoMudarFonte);
    connect(novo, &QAbstractItemModel::modelReset, this, &FrmParcelaN::ajustaColunas);

    ajustaColunas();
    if (novo->currentRow() >= 0)
        m_dtGrid->setCurrentIndex(novo->index(novo->currentRow(), fonte::kNome));
    aoMudarFonte();
}

void FrmParcelaN::ajustaColunas()
{
    for (int coluna : { 5, 6 })
        m_dtGrid->setColumnHidden(coluna, true);
    m_dtGrid->resizeColumnsToContents();
    for (int c = 0; c < m_fontes->columnCount(); ++c)
        m_dtGrid->setColumnWidth(c, std::clamp(m_dtGrid->columnWidth(c) + 12, 56, 240));
}

void FrmParcelaN::aoMudarFonte()
{
    const int linha = m_fontes ? m_fontes->currentRow() : -1;
    const qint64 id = linha >= 0 ? m_fontes->cursor().rowIdAt(linha) : -1;
    m_txtCalcula->setText(linha >= 0 ? cellText(m_fontes->value(linha, 0)) : QString());
    // Another source wipes the parcels; the same one read again by chkTodas keeps them and
    // gives them its dose as read now.
    if (id != m_linhaFonte)
        limpaParcelas();
    m_linhaFonte = id;
    calculaFonte();
    for (int i = 0; i < kMaxParcelas; ++i) {
        if (m_cboPorc[i]->currentIndex() >= 0)
            escolhePorcentagem(i);
    }
}

void FrmParcelaN::calculaFonte()
{
    m_txtFnt->clear();
    m_txtCusto->clear();
    const int linha = m_fontes ? m_fontes->currentRow() : -1;
    if (linha < 0)
        return;
    const DoseFonte dose = CalculaDoseFonte(
        m_necNCob, m_fontes->value(linha, fonte::kN), m_fontes->value(linha, fonte::kPreco));
    m_txtFnt->setText(dose.txtFnt);
    m_txtCusto->setText(dose.txtCusto);
}

void FrmParcelaN::limpaParcelas()
{
    for (int i = 0; i < kMaxParcelas; ++i) {
        m_cboPorc[i]->setCurrentIndex(-1);
        m_txtDose[i]->clear();
        m_txtEpoca[i]->clear();
    }
}

void FrmParcelaN::defineParcelas(int numero)
{
    // Every choice of the number wipes what was entered.
    limpaParcelas();
    for (int i = 0; i < kMaxParcelas; ++i) {
        for (QWidget* controle :
            std::initializer_list<QWidget*> { m_cboPorc[i], m_txtDose[i], m_txtEpoca[i] })
            controle->setEnabled(i < numero);
    }
}

void FrmParcelaN::escolhePorcentagem(int parcela)
{
    m_txtDose[parcela]->setText(DoseParcela(m_cboPorc[parcela]->currentText(), m_txtFnt->text()));
}

void FrmParcelaN::prosseguir()
{
    EntradaParcelamento entrada;
    const int linha = m_fontes ? m_fontes->currentRow() : -1;
    if (linha >= 0) {
        entrada.fonte = cellText(m_fontes->value(linha, fonte::kNome));
        entrada.preco = m_fontes->value(linha, fonte::kPreco);
    }
    entrada.txtFnt = m_txtFnt->text();
    entrada.numero = m_cboNVezes->currentIndex();
    for (int i = 0; i < kMaxParcelas; ++i)
        entrada.parcelas[i] = { m_cboPorc[i]->currentText(), m_txtDose[i]->text(), m_txtEpoca[i]->text() };

    if (const Parada recusa = ProssegueParcelamento(m_session, entrada)) {
        ui::mostra(this, *recusa);
        return;
    }
    if (mostraJanela(this, m_windows, janela::kFinalCalculo))
        hide();
}

void FrmParcelaN::retornar()
{
    const QString janela = janelaDoPlano(m_session.TipoPlano);
    if (janela.isEmpty()) {
        informacao(this, kMsgIndisponivel);
        return;
    }
    if (mostraJanela(this, m_windows, janela))
        hide();
}

void FrmParcelaN::cancelar()
{
    FechaJanelas(m_session, m_windows, true);
}

QWidget* criaFrmParcelaN(Session& session, WindowRegistry& windows)
{
    return new FrmParcelaN(session, windows);
}

} // namespace lavra::ui
