#pragma once

#include <QString>

namespace lavra {

// How a step tells the user why it stops: a refusal of what was typed, a plain notice, or a
// refusal that protects linked data or a failure the step cannot get past.
enum class TipoMensagem { Aviso, Informacao, Erro };

// The refusal of a form with an empty field.
inline const QString kMsgCamposVazios = QStringLiteral("Há campos vazios!");

struct Recusa {
    TipoMensagem tipo = TipoMensagem::Aviso;
    QString texto;
};

} // namespace lavra
