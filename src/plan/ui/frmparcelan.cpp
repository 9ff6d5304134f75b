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

#include <QMenuBar>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
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

    m_lblNec = rotuloDestaque(TextoNecessidadeN(m_necNCob), QStringLiteral("lblNec"), this);
    layout->addWidget(m_lblNec);
    m_fontes = new EscolhaFonteN(
        m_session, m_necNCob, QStringLiteral("Selecione uma fonte de nitrogênio dentre os fertilizantes abaixo"), this);
    layout->addWidget(m_fontes, 1);
    layout->addWidget(criaParcelas());

    const LinhaPasso botoes = adicionaBotoesPasso(layout, this,
        { {}, { QStringLiteral("cmdCancela"), QStringLiteral("Cancelar") },
            { QStringLiteral("cmdRetorna"), QStringLiteral("<< Retornar") },
            { QStringLiteral("cmdProssegue"), QStringLiteral("Prosseguir >>") } });
    QPushButton* cmdCancela = botoes.cancela;
    QPushButton* cmdRetorna = botoes.retorna;
    QPushButton* cmdProssegue = botoes.prossegue;

    QList<QWidget*> ordem = { m_fontes->grade(), m_fontes->chkTodas(), m_cboNVezes };
    for (int i = 0; i < kMaxParcelas; ++i)
        ordem << m_cboPorc[i] << m_txtEpoca[i];
    ordem << cmdProssegue << cmdRetorna << cmdCancela;
    for (int i = 1; i < ordem.size(); ++i)
        setTabOrder(ordem[i - 1], ordem[i]);

    connect(cmdProssegue, &QPushButton::clicked, this, &FrmParcelaN::prosseguir);
    connect(cmdRetorna, &QPushButton::clicked, this, &FrmParcelaN::retornar);
    connect(cmdCancela, &QPushButton::clicked, this, &FrmParcelaN::cancelar);

    connect(m_fontes, &EscolhaFonteN::fonteMudou, this, &FrmParcelaN::aoMudarFonte);
    defineParcelas(0);
    m_fontes->AbreTabelaN(false);
    resize(sizeHint().width(), 620);
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

void FrmParcelaN::aoMudarFonte(bool outra)
{
    // Another source wipes the parcels; the same one read again by chkTodas keeps them and
    // gives them its dose as read now.
    if (outra)
        limpaParcelas();
    for (int i = 0; i < kMaxParcelas; ++i) {
        if (m_cboPorc[i]->currentIndex() >= 0)
            escolhePorcentagem(i);
    }
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
    m_txtDose[parcela]->setText(DoseParcela(m_cboPorc[parcela]->currentText(), m_fontes->txtFnt()));
}

void FrmParcelaN::prosseguir()
{
    EntradaParcelamento entrada;
    entrada.fonte = m_fontes->fonte();
    entrada.preco = m_fontes->preco();
    entrada.txtFnt = m_fontes->txtFnt();
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
