#pragma once

#include "base/outcome.h"

#include <QString>
#include <QStringList>
#include <QVariant>

#include <array>
#include <optional>

namespace lavra {

struct Session;

// The nitrogen in topdressing: the dose of one source that covers the need, and its split into
// one to eight parcels, each with a share and a time of application.

inline const QString kConsultaFontesN = QStringLiteral("SELECT * FROM NPK Where P LIKE 0 AND K LIKE 0");
inline const QString kConsultaTodas = QStringLiteral("SELECT * FROM NPK");

inline const QString kMsgParcelas = QStringLiteral("Existem campos das parcelas não definidos!");
inline const QString kMsgEpocas = QStringLiteral("Existem campos das épocas de aplicação não preenchidos!");
inline const QString kMsgSomaMaior = QStringLiteral("A soma das frações é maior que 100 %!");
inline const QString kMsgSomaMenor = QStringLiteral("A soma das frações é menor que 100 %!");
inline const QString kMsgSemDoseFonte = QStringLiteral(
    "A dose da fonte de nitrogênio não foi calculada. Selecione na lista uma fonte que contenha N.");

inline constexpr int kMaxParcelas = 8;

// Grid ordinals the step reads from the selected source.
namespace fonte {
inline constexpr int kNome = 1;
inline constexpr int kN = 2;
inline constexpr int kPreco = 7;
} // namespace fonte

// chkTodas off: the sources of nitrogen alone; on: every fertiliser.
QString ConsultaFontes(bool todas);

// Nec 3, read once as the step opens; a value that reads as no number counts as no need.
float LeNecessidadeCobertura(const Session& session);
QString TextoNecessidadeN(float necNCob);

// "Selecione", then "1" to "8".
QStringList NumerosDeParcelas();
// "5 %" to "100 %" in steps of 5: no other share can be chosen.
QStringList PercentuaisDeParcela();
// The whole number of a share as the list shows it, "45 %" giving 45; 0 for none.
int PercentualDe(const QString& porcentagem);

// txtFnt and txtCusto for the selected source: the dose rounded half to even and the cost on
// that rounded dose. Both empty for a source without N, and the cost alone empty when the
// price is missing.
struct DoseFonte {
    QString txtFnt;
    QString txtCusto;
};
DoseFonte CalculaDoseFonte(float necNCob, const QVariant& percentualN, const QVariant& preco);

// txtDose of a parcel: its share of the source dose, unrounded; empty while there is no dose.
QString DoseParcela(const QString& porcentagem, const QString& txtFnt);

struct Parcela {
    QString porcentagem; // the text chosen in cboPorc, empty for no choice
    QString dose; // txtDose
    QString epoca; // txtEpoca
};
using Parcelas = std::array<Parcela, kMaxParcelas>;

// The check of the first n parcels before going on: the first fault's message, or nothing.
// The shares must add up to exactly 100.
Parada Verifica(int n, const Parcelas& parcelas);

struct EntradaParcelamento {
    QString fonte; // grid ordinal 1 of the selected row
    QVariant preco; // grid ordinal 7, R$/t
    QString txtFnt; // dose of the source, kg/ha
    int numero = 0; // position chosen in cboN_Vezes; "Selecione" is 0
    Parcelas parcelas;
};

// The way on to the final step. Without a need of N in topdressing nothing is checked or
// written. Otherwise the source and the parcels are checked, and the nitrogen block at base 18
// (36 for formulation) and CustoN written. Pairs above the chosen number of parcels keep what an
// earlier pass left there. Returns the refusal to show, or nothing when the step may go on.
Parada ProssegueParcelamento(Session& session, const EntradaParcelamento& entrada);

} // namespace lavra
