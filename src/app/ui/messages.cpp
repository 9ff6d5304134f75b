#include "messages.h"

#include "app/refusal.h"
#include "store/storeerror.h"

#include <QAbstractButton>

namespace lavra::ui {

namespace {

Responder& responder()
{
    static Responder current;
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
    if (mensagem.botoes.testFlag(QMessageBox::No))
        box.setDefaultButton(QMessageBox::No);
    if (QAbstractButton* yes = box.button(QMessageBox::Yes))
        yes->setText(QStringLiteral("&Sim"));
    if (QAbstractButton* no = box.button(QMessageBox::No))
        no->setText(QStringLiteral("&Não"));
    return static_cast<QMessageBox::StandardButton>(box.exec());
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

void mostraRecusa(QWidget* parent, const Recusa& recusa)
{
    switch (recusa.tipo) {
    case TipoMensagem::Aviso: aviso(parent, recusa.texto); break;
    case TipoMensagem::Informacao: informacao(parent, recusa.texto); break;
    case TipoMensagem::Erro: critico(parent, recusa.texto); break;
    }
}

void erroBanco(QWidget* parent, const StoreError& error)
{
    critico(parent, QStringLiteral("Erro no banco de dados:\n") + error.message());
}

} // namespace lavra::ui
