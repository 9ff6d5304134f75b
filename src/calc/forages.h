#pragma once

#include "calc/cropstep.h"
#include "calc/crops.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace lavra {

class Store;
struct Session;
class WindowHost;

// ---- Forages (frmForrage) -------------------------------------------------------------------

// The forage window carries the grain window's title, and its result frame a misspelling; both
// are the program's own.
inline const QString kTituloForrageiras = QStringLiteral("Grupo: Culturas Produtoras de Grãos");
inline const QString kResultadoForrageiras = QStringLiteral("Rusultado final (kg/ha)");
inline const QString kRotuloExpectativaMS = QStringLiteral("Expectativa de produtividade ( t de MS/ha )");
inline const QString kNaoRequerRendimento = QStringLiteral("Não requer");
inline const QString kMsgSelecioneCombinacao = QStringLiteral("Selecione a combinação das espécies!");
inline const QString kMsgSelecioneUsoAnterior = QStringLiteral("Selecione a utilização do cultivo anterior!");

// The items of cboComb and cboUsoAnt after "Selecione"; cboCtvoAnt is cultivosAnterioresForragem.
const QStringList& combinacoesForragem();
const QStringList& usosAnterioresForragem();
// Grazing is the use of the area that leaves P and K as the tables give them.
inline constexpr int kUsoPastejo = 3;

// Which inputs a crop asks for, by its position.
bool forragemPedeRendimento(int posicao); // every crop but native pasture
bool forragemPedeCombinacao(int posicao); // the two mixtures
bool forragemPedeCultivoAnterior(int posicao); // silage maize and sorghum
bool forragemPedeUso(int posicao); // positions 1 to 11

// Above this organic matter, in %, the equations give no nitrogen.
inline constexpr double kLimiteMOForragem = 6.4;
// T of equation A or B for the organic matter in %; 0 for the other rules.
double nitrogenioEquacao(RegraNForragem regra, double materiaOrganica);
// The reference yield of a mixture by the position of cboComb; nothing for the other crops,
// which take column 1 of their rows.
std::optional<double> referenciaMistura(int posicao, int combinacao);

// The note on nitrogen of the crops that get none, with the crop's text; empty for the others.
QString avisoForragem(int posicao);

// What the forage window holds when its commands run.
struct DefinicoesForrageiras {
    int posicao = -1; // lstCulturas
    QString expectativa; // txtExpect as typed
    int combinacao = 0; // cboComb
    int cultivoAnterior = 0; // cboCtvoAnt
    int usoAnterior = 0; // cboUsoAnt
};

// cmdCalc: the five checks in the window's order, then N by the crop's rule, P and K by yield
// with the mixtures' reference, x 1.5 after any use but grazing, and the note on nitrogen as the
// outcome. Sets CultivoTxt and RefazPlano and drops the note of an adjustment. Throws StoreError.
CalculoCultura CalculaForrageiras(const Store& db, Session& session, const DefinicoesForrageiras& definicoes);

// cmdProssegue: the typed yield goes on, but native pasture has none.
Parada ProssegueForrageiras(
    Session& session, WindowHost& janelas, const DefinicoesForrageiras& definicoes, const TextosNec& nec);

} // namespace lavra
