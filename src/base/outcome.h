#pragma once

#include <QString>

#include <optional>

namespace lavra {

// The box a step's message goes in.
enum class TipoDesfecho {
    Aviso,       // a refusal of what was typed or chosen: exclamation
    Informacao,  // a plain notice: information
    Critico,     // a refusal that protects saved data, or a fault the step cannot get past
    Pergunta,    // a question, Yes and No; the step is called again with the answer
    Simples,     // a box without an icon
};

// What a step tells the user when it does not simply go on: the kind of box, the text, and the
// object name of the field to put the focus back on, if any.
struct Desfecho {
    TipoDesfecho tipo = TipoDesfecho::Aviso;
    QString texto;
    QString campo;

    static Desfecho aviso(QString texto, QString campo = {}) { return {TipoDesfecho::Aviso, std::move(texto), std::move(campo)}; }
    static Desfecho informacao(QString texto) { return {TipoDesfecho::Informacao, std::move(texto), {}}; }
    static Desfecho critico(QString texto) { return {TipoDesfecho::Critico, std::move(texto), {}}; }
    static Desfecho pergunta(QString texto) { return {TipoDesfecho::Pergunta, std::move(texto), {}}; }
    static Desfecho simples(QString texto) { return {TipoDesfecho::Simples, std::move(texto), {}}; }

    bool operator==(const Desfecho&) const = default;
};

// A step that went on has nothing to tell.
using Parada = std::optional<Desfecho>;

// The refusal of a form with an empty field.
inline const QString kMsgCamposVazios = QStringLiteral("Há campos vazios!");

} // namespace lavra
