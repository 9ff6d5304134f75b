#include "app/session.h"
#include "app/ui/messages.h"
#include "app/ui/windowregistry.h"
#include "app/windownames.h"
#include "base/outcome.h"
#include "registers/company.h"
#include "registerwindow.h"
#include "store/cursormodel.h"
#include "store/storeerror.h"
#include "windows.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace lavra::ui {

namespace {

// The technicians, and which of them signs the reports.
class FrmTecResp final : public RegisterWindow {
public:
    FrmTecResp(Session& session, WindowRegistry& windows)
        : RegisterWindow(session, windows,
                         {QStringLiteral("Responsáveis Técnicos"), QStringLiteral("SELECT * FROM TecResp"),
                          QStringLiteral("dtGridCli"), &Session::Operacao, {3}})
    {
        auto* outer = new QVBoxLayout(formArea());
        outer->setContentsMargins(0, 0, 0, 0);
        auto* form = new QFormLayout;
        m_nome = addField(QStringLiteral("txtNome"), 0);
        m_prof = addField(QStringLiteral("txtProf"), 1);
        m_crea = addField(QStringLiteral("txtCREA"), 2);
        form->addRow(QStringLiteral("Nome"), m_nome);
        form->addRow(QStringLiteral("Profissão"), m_prof);
        form->addRow(QStringLiteral("CREA"), m_crea);
        outer->addLayout(form);

        auto* frame = new QGroupBox(QStringLiteral("Técnico que assinará o laudo"), formArea());
        auto* row = new QHBoxLayout(frame);
        m_assina = new QComboBox(frame);
        m_assina->setObjectName(QStringLiteral("cboTecAssina"));
        m_assina->setMinimumWidth(280);
        auto* ok = new QPushButton(QStringLiteral("OK"), frame);
        ok->setObjectName(QStringLiteral("cmdOK"));
        connect(ok, &QPushButton::clicked, this, &FrmTecResp::marca);
        row->addWidget(m_assina, 1);
        row->addWidget(ok);
        outer->addWidget(frame);

        VinculaTextos();
        BloqueiaTextos();
        CarregaCombo();
        resize(640, 500);
    }

protected:
    QVariantList valores() override
    {
        // The mark is left as the table gives it: only cmdOK decides who signs.
        return {m_nome->text(), m_prof->text(), m_crea->text()};
    }

    void aposConfirmar() override { CarregaCombo(); }

private:
    void CarregaCombo()
    {
        m_assina->clear();
        int marked = -1;
        for (int row = 0; row < view()->rowCount(); ++row) {
            m_assina->addItem(cellText(view()->value(row, 0)));
            if (view()->value(row, 3).toInt() == 1)
                marked = row;
        }
        m_assina->setCurrentIndex(marked);
    }

    void marca()
    {
        if (m_assina->currentIndex() < 0)
            return;
        const QString nome = m_assina->currentText();
        try {
            MarcaTecnico(*view(), m_session, nome);
            view()->announceChange();
        } catch (const StoreError& error) {
            // The refused mark is dropped, so that no later click on the grid writes it.
            view()->discardEdits();
            erroBanco(this, error);
            return;
        }
        mostra(this, Desfecho::informacao(QStringLiteral("Técnico: ") + nome + QStringLiteral(" seleciondado")));
        // An open report takes the new signature at once; this register then makes way for it.
        emit m_session.eventos.tecnicoAssinanteMudou();
        if (QWidget* laudo = m_windows.window(janela::kObsLaudo); laudo && laudo->isVisible())
            close();
    }

    QLineEdit* m_nome = nullptr;
    QLineEdit* m_prof = nullptr;
    QLineEdit* m_crea = nullptr;
    QComboBox* m_assina = nullptr;
};

} // namespace

QWidget* criaFrmTecResp(Session& session, WindowRegistry& windows) { return new FrmTecResp(session, windows); }

} // namespace lavra::ui
