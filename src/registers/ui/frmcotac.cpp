#include "app/session.h"
#include "app/ui/buttons.h"
#include "app/ui/fieldchecks.h"
#include "app/ui/messages.h"
#include "base/numbers.h"
#include "registers/inputs.h"
#include "store/storeerror.h"
#include "windows.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace lavra::ui {

namespace {

// The dollar quotation, from which every price in reais follows.
class FrmCotac final : public QWidget {
public:
    explicit FrmCotac(Session& session) : QWidget(nullptr, Qt::Window), m_session(session)
    {
        setWindowTitle(QStringLiteral("Ajustar cotação do dolar"));
        auto* layout = new QVBoxLayout(this);
        m_lbl1 = new QLabel(this);
        m_lbl1->setObjectName(QStringLiteral("lbl1"));
        QFont bold = m_lbl1->font();
        bold.setBold(true);
        m_lbl1->setFont(bold);
        layout->addWidget(m_lbl1);

        auto* row = new QHBoxLayout;
        row->addWidget(new QLabel(QStringLiteral("Atualizar: 1 dolar = "), this));
        m_cota = new QLineEdit(this);
        m_cota->setObjectName(QStringLiteral("txtCota"));
        m_cota->setMaximumWidth(100);
        checaAoSair(m_cota, Grandeza::Cotacao);
        row->addWidget(m_cota);
        row->addWidget(new QLabel(QStringLiteral("reais"), this));
        row->addStretch();
        layout->addLayout(row);

        const auto buttons = adicionaBotoes(layout, this, {{QStringLiteral("cmdAtualiza"), QStringLiteral("Atualizar")},
                                                           {QStringLiteral("Command1"), QStringLiteral("Fechar")}});
        connect(buttons[0], &QPushButton::clicked, this, &FrmCotac::atualiza);
        connect(buttons[1], &QPushButton::clicked, this, &QWidget::close);
        ExibeCotacao();
        setMinimumWidth(380);
    }

private:
    void ExibeCotacao()
    {
        try {
            m_lbl1->setText(QStringLiteral("Cotação atual: 1 dolar = ") + numberText(LeCotacao(m_session.db))
                            + QStringLiteral(" reais"));
        } catch (const StoreError& error) {
            erroBanco(this, error);
        }
    }

    void atualiza()
    {
        if (m_cota->text().trimmed().isEmpty())
            return;
        if (recusaCampo(m_cota))
            return;
        try {
            AtualizaCotacao(m_session.db, toSingle(parseNumber(m_cota->text()).value_or(0.0)));
        } catch (const StoreError& error) {
            // Nothing changed, and reading the same file again would only tell the failure twice.
            erroBanco(this, error);
            return;
        }
        ExibeCotacao();
    }

    Session& m_session;
    QLabel* m_lbl1 = nullptr;
    QLineEdit* m_cota = nullptr;
};

} // namespace

QWidget* criaFrmCotac(Session& session, WindowRegistry&) { return new FrmCotac(session); }

} // namespace lavra::ui
