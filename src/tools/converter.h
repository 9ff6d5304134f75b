#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace lavra {

// The unit converter: a laboratory's figure in the unit the analysis register expects.

struct UnidadeDeOrigem {
    QString unidade;
    QString fator;  // as written in the table, with the point
};

struct ElementoConvertido {
    QString nome;
    QString unidadeAlvo;
    QList<UnidadeDeOrigem> origens;
};

// The eight elements, in list order.
const QList<ElementoConvertido>& elementosConvertidos();

// A factor as the hidden list holds it: its text on the machine's setting.
QString textoDoFator(const QString& fator);

// The value times the factor, both read on the machine's setting as 32-bit floats, with three
// decimals; nothing when either is not a number.
std::optional<QString> Calcula(const QString& valor, const QString& fator);

// The field of the analysis register that receives the element of that index; empty for H,
// which the register does not keep.
QString campoDaAnalise(int elemento);

} // namespace lavra
