#pragma once

#include <QMessageBox>
#include <QString>

#include <functional>

class QWidget;

namespace lavra {
class StoreError;
struct Desfecho;
}

namespace lavra::ui {

inline const QString kTitulo = QStringLiteral("Lavra 2.1");

enum class Icone { Nenhum, Exclamacao, Critico, Pergunta, Informacao };

struct Mensagem {
    Icone icone = Icone::Nenhum;
    QString texto;
    QMessageBox::StandardButtons botoes = QMessageBox::Ok;
    // The button Enter presses; a box with No defaults to No unless another is named.
    QMessageBox::StandardButton padrao = QMessageBox::NoButton;
};

// Every box of the program goes through here, with the program's title. Tests install a
// responder that answers in place of the user; without one the box is shown.
using Responder = std::function<QMessageBox::StandardButton(const Mensagem&)>;
void setResponder(Responder responder);

QMessageBox::StandardButton mostra(QWidget* parent, const Mensagem& mensagem);

// A line typed in answer to a question, under a title of its own, starting from an answer the
// program suggests; a closed or cancelled box gives an empty answer. Tests answer it in place of
// the user as they answer the boxes.
using RespondedorEntrada = std::function<QString(const QString& titulo, const QString& pergunta)>;
void setRespondedorEntrada(RespondedorEntrada respondedor);
QString entrada(QWidget* parent, const QString& titulo, const QString& pergunta, const QString& sugestao = {});

// A refusal: exclamation, OK.
void aviso(QWidget* parent, const QString& texto);
// A refusal that protects linked data: critical, OK.
void critico(QWidget* parent, const QString& texto);
// A plain notice: information, OK.
void informacao(QWidget* parent, const QString& texto);
// A box with no icon, OK.
void simples(QWidget* parent, const QString& texto);
// Before deleting: exclamation, Yes and No. True for Yes.
bool confirma(QWidget* parent, const QString& texto);
// Before cancelling: question, Yes and No. True for Yes.
bool pergunta(QWidget* parent, const QString& texto);
// What a step tells, in the box its kind calls for; the focus then goes to the field it names,
// found among the parent's own controls. A question asks with Yes and No (exclamation, No by
// default): true for Yes. Every other kind gives false.
bool mostra(QWidget* parent, const Desfecho& desfecho);
// A failure of the database: critical, in plain words, saying when a write was stopped, with the
// engine's own words as a detail.
void erroBanco(QWidget* parent, const StoreError& error);
// The database at path cannot be worked on at start: critical, naming the file; the program ends.
void erroAbertura(const QString& caminho, const StoreError& error);

} // namespace lavra::ui
