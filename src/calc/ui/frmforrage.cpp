#include "app/session.h"
#include "app/ui/fieldchecks.h"
#include "app/ui/widgets.h"
#include "app/ui/windowregistry.h"
#include "calc/cropgroups.h"
#include "calc/forages.h"
#include "cropwindow.h"
#include "windows.h"

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

// The crop window of group 3: forages and pastures, by the yield of dry mass, the organic
// matter, the mixture of species, the previous crop and the use of the area before.
class FrmForrage final : public CropWindow {
public:
    FrmForrage(Session& session, WindowRegistry& windows)
        : CropWindow(session, windows, culturasForrageiras())
    {
        setWindowTitle(kTituloForrageiras);
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(criaEntradas(), 1);
        layout->addWidget(criaResultadoFinal(legendasNec(), kResultadoForrageiras));
        criaComandos(layout);
        culturaEscolhida(-1);
    }

protected:
    void culturaEscolhida(int posicao) override
    {
        m_txtExpect->setEnabled(true);
        m_txtExpect->clear();
        m_cboComb->setCurrentIndex(0);
        m_cboUsoAnt->setCurrentIndex(0);
        m_cboComb->setEnabled(forragemPedeCombinacao(posicao));
        m_cboCtvoAnt->setEnabled(forragemPedeCultivoAnterior(posicao));
        if (posicao >= 0 && !forragemPedeRendimento(posicao)) {
            m_txtExpect->setText(kNaoRequerRendimento);
            m_txtExpect->setEnabled(false);
        }
        habilitaUso();
    }

    void calcula() override
    {
        // A number refused as its box was left may still stand there; it is never read.
        if (m_txtExpect->isEnabled() && recusaCampos({ m_txtExpect }))
            return;
        const auto d = definicoes();
        if (const auto r = executa<CalculoCultura>([&]() { return CalculaForrageiras(m_session.db, m_session, d); }))
            mostraCalculo(*r);
    }

    Parada prossegue() override
    {
        return ProssegueForrageiras(m_session, m_windows, definicoes(), textosNec());
    }

private:
    QGroupBox* criaEntradas()
    {
        QGridLayout* grade = nullptr;
        QGroupBox* frame = criaDefinicoes(grade, 9);

        m_txtExpect = new QLineEdit(frame);
        m_txtExpect->setObjectName(QStringLiteral("txtExpect"));
        m_txtExpect->setMaximumWidth(fontMetrics().horizontalAdvance(QStringLiteral("Não requer")) + 24);
        grade->addWidget(rotulo(kRotuloExpectativaMS, m_txtExpect, frame), 0, 1);
        grade->addWidget(m_txtExpect, 1, 1);
        ligaCampoNumerico(m_txtExpect);
        defineGrandeza(m_txtExpect, Grandeza::Expectativa);

        // The mixture comes before the use of the area, which waits for it.
        m_cboComb = lista(QStringLiteral("cboComb"), combinacoesForragem(), frame);
        grade->addWidget(rotulo(QStringLiteral("Combinação das espécies"), m_cboComb, frame), 2, 1);
        grade->addWidget(m_cboComb, 3, 1, Qt::AlignLeft);
        connect(m_cboComb, &QComboBox::currentIndexChanged, this, &FrmForrage::habilitaUso);
        m_cboCtvoAnt = lista(QStringLiteral("cboCtvoAnt"), cultivosAnterioresForragem(), frame);
        grade->addWidget(rotulo(QStringLiteral("Cultivo anterior da área"), m_cboCtvoAnt, frame), 4, 1);
        grade->addWidget(m_cboCtvoAnt, 5, 1, Qt::AlignLeft);
        m_cboUsoAnt = lista(QStringLiteral("cboUsoAnt"), usosAnterioresForragem(), frame);
        grade->addWidget(rotulo(QStringLiteral("Utilização do cultivo anterior"), m_cboUsoAnt, frame), 6, 1);
        grade->addWidget(m_cboUsoAnt, 7, 1, Qt::AlignLeft);
        grade->setRowStretch(8, 1);
        grade->setColumnStretch(1, 1);
        return frame;
    }

    // A list with "Selecione" first; any change of it empties the result.
    QComboBox* lista(const QString& nome, const QStringList& itens, QWidget* pai)
    {
        auto* combo = new QComboBox(pai);
        combo->setObjectName(nome);
        combo->addItem(kSelecione);
        combo->addItems(itens);
        combo->setSizeAdjustPolicy(QComboBox::AdjustToContents);
        connect(combo, &QComboBox::currentIndexChanged, this, [this]() { LimpaCalculo(); });
        return combo;
    }

    // The use of the area counts for the crops that ask it; a mixture asks it once its
    // combination is chosen, whichever it is, so that none is left without a way to fill it.
    void habilitaUso()
    {
        const int posicao = posicaoCultura();
        m_cboUsoAnt->setEnabled(forragemPedeUso(posicao)
            && (!forragemPedeCombinacao(posicao) || m_cboComb->currentIndex() >= 1));
    }

    DefinicoesForrageiras definicoes() const
    {
        DefinicoesForrageiras d;
        d.posicao = posicaoCultura();
        d.expectativa = m_txtExpect->isEnabled() ? m_txtExpect->text() : QString();
        d.combinacao = m_cboComb->currentIndex();
        d.cultivoAnterior = m_cboCtvoAnt->currentIndex();
        d.usoAnterior = m_cboUsoAnt->currentIndex();
        return d;
    }

    QLineEdit* m_txtExpect = nullptr;
    QComboBox* m_cboCtvoAnt = nullptr;
    QComboBox* m_cboUsoAnt = nullptr;
    QComboBox* m_cboComb = nullptr;
};

} // namespace

QWidget* criaFrmForrage(Session& session, WindowRegistry& windows)
{
    return new FrmForrage(session, windows);
}

} // namespace lavra::ui
