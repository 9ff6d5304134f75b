#include "app/session.h"
#include "app/ui/fieldchecks.h"
#include "app/ui/messages.h"
#include "app/ui/widgets.h"
#include "app/ui/windowregistry.h"
#include "app/windownames.h"
#include "calc/crops.h"
#include "calc/forest.h"
#include "calc/forages.h"
#include "cropwindow.h"
#include "forestneed.h"
#include "windows.h"

#include <QFocusEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace lavra::ui {

namespace {

// The crop window of group 4: forest species, whose need is three dressings by three
// nutrients from the one table FLOREST, and whose plan is the forest plan.
class FrmFlorest final : public CropWindow {
public:
    FrmFlorest(Session& session, WindowRegistry& windows)
        : CropWindow(session, windows, culturasFlorestais())
    {
        setWindowTitle(kTituloFlorestais);
        auto* layout = new QVBoxLayout(this);
        auto* corpo = new QHBoxLayout;
        QGridLayout* grade = nullptr;
        QGroupBox* definicoes = criaDefinicoes(grade, 3);
        m_txtExpect = new QLineEdit(definicoes);
        m_txtExpect->setObjectName(QStringLiteral("txtExpect"));
        m_txtExpect->setMaximumWidth(fontMetrics().horizontalAdvance(kNaoRequerRendimento) + 24);
        grade->addWidget(rotulo(kRotuloExpectativaFlorest, m_txtExpect, definicoes), 0, 1);
        grade->addWidget(m_txtExpect, 1, 1, Qt::AlignLeft);
        grade->setRowStretch(2, 1);
        ligaCampoNumerico(m_txtExpect);
        defineGrandeza(m_txtExpect, Grandeza::Expectativa);
        // Leaving the box empties the results too, whatever it holds.
        m_txtExpect->installEventFilter(this);
        corpo->addWidget(definicoes, 1);
        corpo->addWidget(criaNecessidadeFlorestal(this, QStringLiteral("Resultado final (kg/ha)"), m_txtNec));
        layout->addLayout(corpo, 1);
        criaComandos(layout);
        culturaEscolhida(-1);
    }

protected:
    bool eventFilter(QObject* objeto, QEvent* evento) override
    {
        // A box or another window taking the focus for a moment is not the user leaving the box.
        if (objeto == m_txtExpect && evento->type() == QEvent::FocusOut) {
            const Qt::FocusReason motivo = static_cast<QFocusEvent*>(evento)->reason();
            if (motivo != Qt::ActiveWindowFocusReason && motivo != Qt::PopupFocusReason)
                LimpaCalculo();
        }
        return CropWindow::eventFilter(objeto, evento);
    }

    void culturaEscolhida(int posicao) override
    {
        const bool pede = posicao < 0 || florestalPedeRendimento(posicao);
        m_txtExpect->setText(pede ? QString() : kNaoRequerRendimento);
        m_txtExpect->setEnabled(pede);
    }

    void calcula() override
    {
        // A number refused as its box was left may still stand there; it is never read.
        if (m_txtExpect->isEnabled() && recusaCampos({ m_txtExpect }))
            return;
        const auto r = executa<CalculoFlorestal>(
            [&]() { return CalculaFlorestais(m_session.db, m_session, posicaoCultura(), expectativa()); });
        if (!r)
            return;
        if (r->substituiResultado) {
            for (int i = 0; i < m_txtNec.size(); ++i)
                m_txtNec[i]->setText(r->nec[static_cast<std::size_t>(i)]);
        }
        if (r->desfecho)
            ui::mostra(this, *r->desfecho);
    }

    Parada prossegue() override
    {
        return ProssegueFlorestais(m_session, m_windows, posicaoCultura(), expectativa(), textos());
    }

    QString proximaJanela() const override { return janela::kNPKFlorest; }

    void ajusta() override
    {
        if (m_txtNec[0]->text().isEmpty()) {
            aviso(this, kMsgNaoCalculada);
            return;
        }
        CopiaParaNecFlorest(m_session, textos());
        m_windows.show(janela::kAjustaFlorest);
    }

private:
    QString expectativa() const { return m_txtExpect->isEnabled() ? m_txtExpect->text() : QString(); }

    TextosNecFlorest textos() const
    {
        TextosNecFlorest t;
        for (std::size_t i = 0; i < t.size(); ++i)
            t[i] = m_txtNec[static_cast<int>(i)]->text();
        return t;
    }

    QLineEdit* m_txtExpect = nullptr;
};

} // namespace

QWidget* criaFrmFlorest(Session& session, WindowRegistry& windows)
{
    return new FrmFlorest(session, windows);
}

} // namespace lavra::ui
