#include "yieldclasswindow.h"

#include "app/session.h"
#include "app/ui/messages.h"
#include "app/ui/widgets.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QVBoxLayout>

namespace lavra::ui {

namespace {

const QString kSelecione = QStringLiteral("Selecione");

} // namespace

YieldClassWindow::YieldClassWindow(Session& session, WindowRegistry& windows, const QString& titulo,
    const QStringList& culturas, QWidget* parent)
    : CropWindow(session, windows, culturas, parent)
{
    setWindowTitle(titulo);
    auto* layout = new QVBoxLayout(this);

    // Room for a few rows in a short list.
    QGridLayout* grade = nullptr;
    QGroupBox* definicoes = criaDefinicoes(grade, 3, 6);

    m_cboExpect = new QComboBox(definicoes);
    m_cboExpect->setObjectName(QStringLiteral("cboExpect"));
    m_cboExpect->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("Selecione 12 a 15")) + 40);
    grade->addWidget(rotulo(QStringLiteral("Expectativa de rendimento (t/ha)"), m_cboExpect, definicoes), 0, 1);
    grade->addWidget(m_cboExpect, 1, 1, Qt::AlignLeft);
    grade->setRowStretch(3, 1);
    grade->setColumnStretch(1, 1);
    // A class is a choice only when the user makes it, by mouse or by keyboard.
    connect(m_cboExpect, &QComboBox::activated, this, &YieldClassWindow::faixaEscolhida);

    layout->addWidget(definicoes, 1);
    layout->addWidget(criaResultadoFinal());
    criaComandos(layout);
    // No crop, no classes.
    m_cboExpect->setEnabled(false);
}

int YieldClassWindow::posicaoExpectativa() const
{
    return m_cboExpect->currentIndex();
}

void YieldClassWindow::culturaEscolhida(int posicao)
{
    const QStringList itens = faixas(posicao);
    m_cboExpect->clear();
    if (itens.isEmpty()) {
        m_cboExpect->setEnabled(false);
        m_cboExpect->setCurrentIndex(-1);
        return;
    }
    m_cboExpect->setEnabled(true);
    m_cboExpect->addItem(kSelecione);
    m_cboExpect->addItems(itens);
    m_cboExpect->setCurrentIndex(0);
}

void YieldClassWindow::faixaEscolhida(int indice)
{
    LimpaCalculo();
    if (indice < 1 || !pedeRendimento(posicaoCultura()))
        return;
    // The box is asked again until it holds a yield; closing it is an empty answer.
    const QString pergunta = perguntaRendimento(m_cboExpect->itemText(indice));
    for (;;) {
        const RespostaRendimento resposta = LeRendimento(entrada(this, kTituloEntrada, pergunta));
        if (!resposta.recusa) {
            m_session.ExpectHort = resposta.valor;
            return;
        }
        ui::mostra(this, *resposta.recusa);
    }
}

void YieldClassWindow::calcula()
{
    const int posicao = posicaoCultura();
    const int faixa = posicaoExpectativa();
    if (const auto r = executa<CalculoCultura>([&]() { return calculo(posicao, faixa); }))
        mostraCalculo(*r);
}

} // namespace lavra::ui
