#include "app/session.h"
#include "app/ui/fieldchecks.h"
#include "registers/inputs.h"
#include "registerwindow.h"
#include "windows.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QVBoxLayout>

namespace lavra::ui {

namespace {

// Liming materials, priced at the fixed rate when entered or edited.
class FrmCadCalc final : public RegisterWindow {
public:
    FrmCadCalc(Session& session, WindowRegistry& windows)
        : RegisterWindow(session, windows,
                         {QStringLiteral("Corretivos"), QStringLiteral("SELECT * FROM Calcario"),
                          QStringLiteral("dtGrid"), &Session::OperacaoInsumo, {3}})
    {
        auto* outer = new QVBoxLayout(formArea());
        outer->setContentsMargins(0, 0, 0, 0);
        auto* frame = new QGroupBox(QStringLiteral("Composição"), formArea());
        outer->addWidget(frame);
        auto* form = new QFormLayout(frame);
        m_espec = addField(QStringLiteral("txtEspec"), 0, 20);
        m_prnt = addField(QStringLiteral("txtPRNT"), 1);
        m_custo = addField(QStringLiteral("txtCusto"), 2);
        form->addRow(QStringLiteral("Especificação (máx. 20 caracteres)"), m_espec);
        form->addRow(QStringLiteral("PRNT (%)"), m_prnt);
        form->addRow(QStringLiteral("Preço (US$/t)"), m_custo);
        checaAoSair(m_prnt, Grandeza::PRNT);
        checaAoSair(m_custo, Grandeza::PrecoDolar);
        VinculaTextos();
        BloqueiaTextos();
        resize(560, 440);
    }

protected:
    bool verificacoes() override
    {
        // A figure refused as it was typed, or one no material has, is never stored.
        return operacao() == kExclusao || !recusaCampos({m_prnt, m_custo});
    }

    QVariantList valores() override { return linhaCorretivo(m_espec->text(), m_prnt->text(), m_custo->text()); }

private:
    QLineEdit* m_espec = nullptr;
    QLineEdit* m_prnt = nullptr;
    QLineEdit* m_custo = nullptr;
};

} // namespace

QWidget* criaFrmCadCalc(Session& session, WindowRegistry& windows) { return new FrmCadCalc(session, windows); }

} // namespace lavra::ui
