#include "cropwindow.h"


#include "app/events.h"
#include "app/navigation.h"
#include "app/session.h"
#include "app/ui/buttons.h"
#include "app/ui/desktop.h"
#include "app/ui/fieldchecks.h"
#include "app/ui/messages.h"
#include "app/ui/widgets.h"
#include "app/ui/windowregistry.h"
#include "app/windownames.h"
#include "store/changenotifier.h"
#include "store/storeerror.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QPushButton>

namespace lavra::ui {

CropWindow::CropWindow(
    Session& session, WindowRegistry& windows, const QStringList& culturas, QWidget* parent)
    : ChainWindow(session, windows, parent)
{
    // Built first, so that the tab chain starts at the crop.
    m_lstCulturas = new QListWidget(this);
    m_lstCulturas->setObjectName(QStringLiteral("lstCulturas"));
    m_lstCulturas->addItems(culturas);
    semEscolhaInicial(m_lstCulturas);
    connect(m_lstCulturas, &QListWidget::itemSelectionChanged, this, [this]() {
        LimpaCalculo();
        culturaEscolhida(posicaoCultura());
    });
    connect(&m_session.eventos, &Eventos::necessidadeAjustada, this, &CropWindow::necessidadeAjustada);
    // A figure read from a row the user has just corrected no longer stands.
    connect(&ChangeNotifier::instance(), &ChangeNotifier::tableChanged, this, [this](const QString& tabela) {
        if (leuTabela(m_linhasUsadas, tabela))
            LimpaCalculo();
    });
}

int CropWindow::posicaoCultura() const
{
    return linhaEscolhida(m_lstCulturas);
}

QStringList CropWindow::legendasNec()
{
    return { QStringLiteral("N base"), QStringLiteral("P base"), QStringLiteral("K base"),
        QStringLiteral("N cob") };
}

QStringList CropWindow::necessidade() const
{
    QStringList valores;
    for (const QLineEdit* caixa : m_txtNec)
        valores << caixa->text();
    return valores;
}

void CropWindow::necessidadeAjustada(const QString& janela, const QStringList& valores)
{
    if (janela != objectName())
        return;
    for (int i = 0; i < m_txtNec.size() && i < valores.size(); ++i)
        m_txtNec[i]->setText(valores[i]);
}

void CropWindow::LimpaCalculo()
{
    for (QLineEdit* caixa : m_txtNec)
        caixa->clear();
}

TextosNec CropWindow::textosNec() const
{
    TextosNec textos;
    const QStringList valores = necessidade();
    for (std::size_t i = 0; i < textos.size(); ++i)
        textos[i] = valores.value(static_cast<int>(i));
    return textos;
}

void CropWindow::mostraCalculo(const CalculoCultura& r)
{
    if (r.substituiResultado) {
        for (int i = 0; i < m_txtNec.size(); ++i)
            m_txtNec[i]->setText(r.nec[static_cast<std::size_t>(i)]);
    }
    if (r.desfecho)
        ui::mostra(this, *r.desfecho);
}

QGroupBox* CropWindow::criaResultadoFinal(const QStringList& legendas, const QString& titulo)
{
    auto* frame = new QGroupBox(titulo, this);
    auto* grade = new QGridLayout(frame);
    for (int i = 0; i < legendas.size(); ++i) {
        auto* caixa = caixaSomenteLeitura(frame, QStringLiteral("txtNec_%1").arg(i));
        caixa->setAlignment(Qt::AlignRight);
        caixa->setMinimumWidth(caixa->fontMetrics().horizontalAdvance(QStringLiteral("0000,00")) + 12);
        auto* legenda = new QLabel(legendas[i], frame);
        legenda->setBuddy(caixa);
        grade->addWidget(legenda, 0, i, Qt::AlignBottom);
        grade->addWidget(caixa, 1, i);
        m_txtNec << caixa;
    }
    grade->setRowStretch(2, 1);
    return frame;
}

QGroupBox* CropWindow::criaDefinicoes(QGridLayout*& grade, int linhas, int minimoLinhas)
{
    auto* frame = new QGroupBox(QStringLiteral("Definições para o cálculo"), this);
    grade = new QGridLayout(frame);
    m_lstCulturas->setParent(frame);
    m_lstCulturas->setMinimumWidth(m_lstCulturas->sizeHintForColumn(0) + 40);
    m_lstCulturas->setMinimumHeight(m_lstCulturas->sizeHintForRow(0) * std::max<int>(m_lstCulturas->count(), minimoLinhas)
        + 2 * m_lstCulturas->frameWidth() + 4);
    grade->addWidget(rotulo(QStringLiteral("Culturas"), m_lstCulturas, frame), 0, 0);
    grade->addWidget(m_lstCulturas, 1, 0, linhas, 1);
    return frame;
}

void CropWindow::criaComandos(QBoxLayout* layout)
{
    // The crop windows have no other menu: the bar holds this one command.
    auto* menus = new QMenuBar(this);
    adicionaLinhasUsadas(menus, this, m_session, m_windows, [this]() { return m_linhasUsadas; });
    layout->setMenuBar(menus);

    const LinhaPasso botoes = adicionaBotoesPasso(layout, this,
        { { { QStringLiteral("cmdCalc"), QStringLiteral("Calcular") },
              { QStringLiteral("cmdAjusta"), QStringLiteral("Ajustar") } },
            { QStringLiteral("cmdCancela"), QStringLiteral("Cancelar") },
            { QStringLiteral("cmdRetorna"), QStringLiteral("<< Retornar") },
            { QStringLiteral("cmdProssegue"), QStringLiteral("Prosseguir >>") } });
    connect(botoes.acoes[0], &QPushButton::clicked, this, &CropWindow::calcula);
    connect(botoes.acoes[1], &QPushButton::clicked, this, &CropWindow::ajusta);
    connect(botoes.prossegue, &QPushButton::clicked, this, &CropWindow::prossegueClicado);
    connect(botoes.retorna, &QPushButton::clicked, this, [this]() {
        hide();
        m_windows.show(janela::kCalagem);
    });
    connect(botoes.cancela, &QPushButton::clicked, this, [this]() { FechaJanelas(m_session, m_windows, true); });
}

void CropWindow::ligaCampoNumerico(QLineEdit* caixa)
{
    connect(caixa, &QLineEdit::textChanged, this, [this](const QString& texto) {
        AvisaValorElevado(this, texto);
        entradaMudou();
    });
    checaAoSair(caixa);
}

void CropWindow::culturaEscolhida(int) { }

void CropWindow::entradaMudou()
{
    LimpaCalculo();
}

QString CropWindow::proximaJanela() const
{
    return janelaDoPlano(m_session.TipoPlano);
}

void CropWindow::ajusta()
{
    if (m_txtNec.isEmpty() || m_txtNec[0]->text().isEmpty()) {
        aviso(this, kMsgNaoCalculada);
        return;
    }
    CopiaParaNec(m_session, textosNec());
    m_windows.show(janela::kAjusta);
}

void CropWindow::prossegueClicado()
{
    if (m_txtNec.isEmpty() || m_txtNec[0]->text().isEmpty()) {
        aviso(this, kMsgNaoCalculada);
        return;
    }
    // Checked before anything is written, so that the step stays as it was.
    const QString proxima = proximaJanela();
    if (proxima.isEmpty() || !m_windows.isRegistered(proxima)) {
        informacao(this, kMsgPlanoIndisponivel);
        return;
    }
    Parada recusa;
    try {
        recusa = prossegue();
    } catch (const StoreError& error) {
        erroBanco(this, error);
        return;
    }
    if (recusa) {
        ui::mostra(this, *recusa);
        return;
    }
    hide();
    if (!m_windows.show(proxima)) {
        show();
        informacao(this, kMsgPlanoIndisponivel);
    }
}

} // namespace lavra::ui
