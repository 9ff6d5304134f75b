#include "messages.h"

#include "base/outcome.h"
#include "store/storeerror.h"

#include <QAbstractButton>
#include <QDir>
#include <QInputDialog>

namespace lavra::ui {

namespace {

Responder& responder()
{
    static Responder current;
    return current;
}

RespondedorEntrada& respondedorEntrada()
{
    static RespondedorEntrada current;
    return current;
}

QMessageBox::Icon toQt(Icone icone)
{
    switch (icone) {
    case Icone::Exclamacao: return QMessageBox::Warning;
    case Icone::Critico: return QMessageBox::Critical;
    case Icone::Pergunta: return QMessageBox::Question;
    case Icone::Informacao: return QMessageBox::Information;
    case Icone::Nenhum: break;
    }
    return QMessageBox::NoIcon;
}

} // namespace

void setResponder(Responder r) { responder() = std::move(r); }

QMessageBox::StandardButton mostra(QWidget* parent, const Mensagem& mensagem)
{
    if (responder())
        return responder()(mensagem);
    QMessageBox box(toQt(mensagem.icone), kTitulo, mensagem.texto, mensagem.botoes, parent);
    box.setObjectName(QStringLiteral("msgLavra"));
    if (mensagem.padrao != QMessageBox::NoButton)
        box.setDefaultButton(mensagem.padrao);
    else if (mensagem.botoes.testFlag(QMessageBox::No))
        box.setDefaultButton(QMessageBox::No);
    if (QAbstractButton* yes = box.button(QMessageBox::Yes))
        yes->setText(QStringLiteral("&Sim"));
    if (QAbstractButton* no = box.button(QMessageBox::No))
        no->setText(QStringLiteral("&Não"));
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

void setRespondedorEntrada(RespondedorEntrada r) { respondedorEntrada() = std::move(r); }

QString entrada(QWidget* parent, const QString& titulo, const QString& pergunta, const QString& sugestao)
{
    if (respondedorEntrada())
        return respondedorEntrada()(titulo, pergunta);
    QInputDialog box(parent);
    box.setObjectName(QStringLiteral("inputLavra"));
    box.setWindowTitle(titulo);
    box.setLabelText(pergunta);
    box.setInputMode(QInputDialog::TextInput);
    box.setTextValue(sugestao);
    return box.exec() == QDialog::Accepted ? box.textValue() : QString();
}

void aviso(QWidget* parent, const QString& texto) { mostra(parent, {Icone::Exclamacao, texto}); }
void critico(QWidget* parent, const QString& texto) { mostra(parent, {Icone::Critico, texto}); }
void informacao(QWidget* parent, const QString& texto) { mostra(parent, {Icone::Informacao, texto}); }
void simples(QWidget* parent, const QString& texto) { mostra(parent, {Icone::Nenhum, texto}); }

bool confirma(QWidget* parent, const QString& texto)
{
    return mostra(parent, {Icone::Exclamacao, texto, QMessageBox::Yes | QMessageBox::No}) == QMessageBox::Yes;
}

bool pergunta(QWidget* parent, const QString& texto)
{
    return mostra(parent, {Icone::Pergunta, texto, QMessageBox::Yes | QMessageBox::No}) == QMessageBox::Yes;
}

bool mostra(QWidget* parent, const Desfecho& desfecho)
{
    bool sim = false;
    switch (desfecho.tipo) {
    case TipoDesfecho::Aviso: aviso(parent, desfecho.texto); break;
    case TipoDesfecho::Informacao: informacao(parent, desfecho.texto); break;
    case TipoDesfecho::Critico: critico(parent, desfecho.texto); break;
    case TipoDesfecho::Pergunta: sim = confirma(parent, desfecho.texto); break;
    case TipoDesfecho::Simples: simples(parent, desfecho.texto); break;
    }
    // The field named is one of the window's own, to be corrected.
    if (parent && !desfecho.campo.isEmpty()) {
        if (auto* campo = parent->findChild<QWidget*>(desfecho.campo))
            campo->setFocus();
    }
    return sim;
}

namespace {

QString detalhe(const StoreError& error)
{
    if (error.detail().isEmpty() || error.detail() == error.message())
        return {};
    return QStringLiteral("\n\nDetalhe: ") + error.detail();
}

} // namespace

void erroBanco(QWidget* parent, const StoreError& error)
{
    QString texto = QStringLiteral("Erro no banco de dados:\n") + error.message();
    // A refused write is one statement or a transaction rolled back, so none of it stays.
    if (error.stoppedWrite())
        texto += QStringLiteral("\nNada foi gravado.");
    critico(parent, texto + detalhe(error));
}

void erroAbertura(const QString& caminho, const StoreError& error)
{
    critico(nullptr, QStringLiteral("Não foi possível abrir o banco de dados %1.\n\n%2\n\nO programa será encerrado.")
                         .arg(QDir::toNativeSeparators(caminho), error.message())
                         + detalhe(error));
}

} // namespace lavra::ui
