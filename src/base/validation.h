#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

#include <optional>

namespace lavra {

inline const QString kMsgValorInvalido = QStringLiteral("Valor inválido!");
inline const QString kMsgSimboloDecimal =
    QStringLiteral("Símbolo decimal diferente da configuracão do computador!");
inline const QString kMsgDataInvalida = QStringLiteral("Digite uma data válida e no formato dd/mm/aaaa");
inline const QString kMsgValorElevado =
    QStringLiteral("Valor elevado detectado! Este valor deve ser em toneladas por hectare.");

// The check of a numeric field as it is left: only digits and the machine's decimal symbol pass.
struct NumberCheck {
    bool invalid = false;      // the caller returns the focus to the field
    bool clearField = false;   // the text was not a number at all
    QStringList messages;      // shown in order, one box each
};
NumberCheck ValidaNumero(const QString& texto);

// What a typed number stands for. Each has the bounds outside which no such value can exist, so
// that an impossible figure is refused before it is stored or used.
enum class Grandeza {
    // The soil analysis.
    Area, PH, Ca, Mg, Al, HAl, SMP, MO, Argila, Fosforo, Potassio,
    // Fertilisers and liming materials.
    TeorN, TeorP, TeorK, TeorMS, IndiceEficiencia, PRNT, PrecoDolar, Cotacao,
    // Grain crops.
    Expectativa, MassaSeca,
    // The need as the user adjusts it, in kg/ha.
    NecNBase, NecPBase, NecKBase, NecNCob,
    // Any of the nine figures of a forest plan.
    NecFlorestal,
    // A dose of fertiliser the user states, in kg/ha.
    DoseFertilizante,
};

struct Faixa {
    double minimo = 0;
    double maximo = 0;
    QString nome;     // as the sentence begins, with its article: "O pH"
    QString unidade;  // after the bounds; empty for none
};
const Faixa& faixa(Grandeza grandeza);

// "O pH deve estar entre 0 e 14.", bounds with the machine's decimal symbol.
QString mensagemFaixa(Grandeza grandeza);

// The refusal of a number outside its bounds, bounds included in what passes. A text that does
// not read as a number is not this check's business and passes.
std::optional<QString> VerificaFaixa(Grandeza grandeza, const QString& texto);

// What a field checked by ValidaNumero must pass again before its value is stored or used: the
// first box of ValidaNumero, then the bounds when the field has them. An empty text passes, as
// emptiness has its own message.
std::optional<QString> RecusaNumero(const QString& texto, std::optional<Grandeza> grandeza = std::nullopt);

// The same for a box that only the platform's test has passed: a thousands separator is refused as
// a symbol other than the decimal one, and a number outside the bounds by them.
std::optional<QString> RecusaValor(Grandeza grandeza, const QString& texto);

// The digits of a date, day first, without separators. Days are not checked against the month.
bool ValidaData(const QString& texto);

// The warning against a yield typed in kilograms instead of tonnes per hectare, if due.
std::optional<QString> AvisaValorElevado(const QVariant& valor);

// "0", "0.0" or "0.00" for 0, 1 or 2 decimals; other counts give an empty text, and a value that
// is not a number comes back as text, so that "---" passes through unchanged.
QString FormataNumero(const QVariant& valor, int casas);

} // namespace lavra
