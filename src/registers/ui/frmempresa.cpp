#include "app/session.h"
#include "app/ui/buttons.h"
#include "app/ui/messages.h"
#include "base/outcome.h"
#include "registers/company.h"
#include "store/storeerror.h"
#include "windows.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace lavra::ui {

namespace {

// The company whose data head every report.
class FrmEmpresa final : public QWidget {
public:
    explicit FrmEmpresa(Session& session) : QWidget(nullptr, Qt::Window), m_session(session)
    {
        setWindowTitle(QStringLiteral("Cadastro de Empresa"));
        auto* layout = new QVBoxLayout(this);
        auto* note = new QLabel(QStringLiteral("As informações inseridas nos campos abaixo serão exibidas no "
                                               "cabeçalho do laudo de indicação de adubação e calagem."),
                                this);
        note->setWordWrap(true);
        layout->addWidget(note);

        auto* form = new QFormLayout;
        const std::pair<const char*, const char*> fields[] = {
            {"txtEmp", "Nome da Empresa"}, {"txtRua", "Rua"},         {"txtNum", "Número"},
            {"txtCEP", "CEP"},             {"txtCid", "Cidade"},      {"txtBair", "Bairro"},
            {"txtEst", "Estado"},          {"txtTelef", "Telefone"},  {"txtEmail", "E-mail"},
            {"txtSite", "Página na internet"}};
        for (const auto& [name, label] : fields) {
            auto* field = new QLineEdit(this);
            field->setObjectName(QString::fromLatin1(name));
            form->addRow(QString::fromUtf8(label), field);
            m_fields << field;
        }
        layout->addLayout(form);
        layout->addStretch();

        const auto buttons = adicionaBotoes(layout, this, {{QStringLiteral("cmdSalva"), QStringLiteral("Salvar")},
                                                           {QStringLiteral("cmdCancel"), QStringLiteral("Excluir")}});
        connect(buttons[0], &QPushButton::clicked, this, &FrmEmpresa::salva);
        connect(buttons[1], &QPushButton::clicked, this, &FrmEmpresa::exclui);

        try {
            if (const auto campos = LeEmpresa(m_session.db)) {
                for (int i = 0; i < m_fields.size(); ++i)
                    m_fields[i]->setText(campos->value(i));
            }
        } catch (const StoreError& error) {
            erroBanco(this, error);
        }
        resize(520, 420);
    }

private:
    void salva()
    {
        QStringList campos;
        // Blanks around a text are never meant; a field of blanks is empty.
        for (QLineEdit* field : m_fields) {
            if (field->text() != field->text().trimmed())
                field->setText(field->text().trimmed());
        }
        for (QLineEdit* field : m_fields) {
            if (field->text().isEmpty()) {
                mostra(this, Desfecho::aviso(kMsgCamposVazios));
                field->setFocus();
                return;
            }
            campos << field->text();
        }
        try {
            SalvaEmpresa(m_session.db, campos);
        } catch (const StoreError& error) {
            erroBanco(this, error);
            return;
        }
        mostra(this, Desfecho::simples(QStringLiteral("Cadastro efetuado com sucesso!")));
        close();
    }

    void exclui()
    {
        if (!mostra(this, Desfecho::pergunta(m_fields[0]->text() + QStringLiteral(" será excluída! Confirma?"))))
            return;
        try {
            ExcluiEmpresa(m_session.db);
        } catch (const StoreError& error) {
            erroBanco(this, error);
            return;
        }
        for (QLineEdit* field : m_fields)
            field->clear();
    }

    Session& m_session;
    QList<QLineEdit*> m_fields;
};

} // namespace

QWidget* criaFrmEmpresa(Session& session, WindowRegistry&) { return new FrmEmpresa(session); }

} // namespace lavra::ui
