#include "app/session.h"
#include "app/ui/messages.h"
#include "registers/clients.h"
#include "registerwindow.h"
#include "windows.h"

#include <QFormLayout>
#include <QLineEdit>

namespace lavra::ui {

namespace {

// Clients: the name is the client's identity, carried by his analyses.
class FrmCadCli final : public RegisterWindow {
public:
    FrmCadCli(Session& session, WindowRegistry& windows)
        : RegisterWindow(session, windows,
                         {QStringLiteral("Clientes"), QStringLiteral("SELECT * FROM Clientes ORDER BY Nome"),
                          QStringLiteral("dtGridCli"), &Session::Operacao, {}})
    {
        auto* form = new QFormLayout(formArea());
        const std::pair<const char*, const char*> fields[] = {
            {"txtNome", "Nome"}, {"txtRua", "Rua/Localidade"}, {"txtCidade", "Cidade"},
            {"txtFone", "Telefone"}, {"txtEmail", "E-mail"}};
        int ordinal = 0;
        for (const auto& [name, label] : fields)
            form->addRow(QString::fromUtf8(label), addField(QString::fromLatin1(name), ordinal++));
        m_nome = formArea()->findChild<QLineEdit*>(QStringLiteral("txtNome"));
        VinculaTextos();
        BloqueiaTextos();
        resize(800, 480);
    }

protected:
    void aoEditar() override { m_session.NomeCliente = m_nome->text(); }

    bool verificacoes() override
    {
        const Parada recusa = verificaCliente(m_session.db, operacao(), m_nome->text(), m_session.NomeCliente);
        if (recusa)
            mostra(this, *recusa);
        return !recusa;
    }

    QVariantList valores() override
    {
        QVariantList values;
        for (const char* name : {"txtNome", "txtRua", "txtCidade", "txtFone", "txtEmail"})
            values << formArea()->findChild<QLineEdit*>(QString::fromLatin1(name))->text();
        return values;
    }

private:
    QLineEdit* m_nome = nullptr;
};

} // namespace

QWidget* criaFrmCadCli(Session& session, WindowRegistry& windows) { return new FrmCadCli(session, windows); }

} // namespace lavra::ui
