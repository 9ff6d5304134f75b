#pragma once

#include "base/outcome.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <array>

namespace lavra {

struct Session;

// The forest plan: three dressings, each planned through the formula, the formulation or a
// source of nitrogen alone, shown as a grid of text rows and saved row by row, "#"-joined.

inline constexpr int kEtapasFlorestais = 3;
inline const QString kLegendaFormulas = QStringLiteral("Fórmulas");
inline const QString kLegendaFormulacao = QStringLiteral("Formulação");
inline const QString kLegendaFontesN = QStringLiteral("Fontes de N");

// A grid of the plan: its heading row first, then a row per product.
using GradeFlorestal = QList<QStringList>;

// The heading row of a grid, whose first cell names what the rows are.
QStringList CabecalhoFlorestal(const QString& primeiroTitulo);

// The first slot of the block of a dressing (1 to 3).
int primeiroSlotDaEtapa(int etapa);
// The cost of the dressing, CustoEtapa1 to 3.
void DefineCustoEtapa(Session& session, int etapa, double custo);

// The need boxes of the plan: NecFlorest as text.
std::array<QString, 9> TextosNecessidadeFlorestal(const Session& session);

// What the two buttons of a dressing offer. Cobertura and Reposição with only N to give offer
// the sources of N in place of the formulation; a dressing with nothing to give offers nothing.
struct OpcoesEtapa {
    bool habilitada = true;
    bool fontesDeN = false;
};
OpcoesEtapa opcoesDaEtapa(const Session& session, int etapa);

// The plan opens with its three grids empty, so the costs of an earlier plan go.
void AbrePlanoFlorestal(Session& session);

// Before a dressing is planned: Nec 0 to 2 = its three need boxes, as text, and EtapaFlorest.
void PreparaEtapa(Session& session, int etapa, const std::array<QString, 3>& necessidade);

// An empty dressing: the heading and a row of dashes.
void PreencheVazios(Session& session, int slot);

// cmdProssegue: slots 12 to 100 back to the integer 0, then each grid in its block, row by row,
// or PreencheVazios for a grid without rows; JanelaAnterior is the plan.
void GravaPlanoFlorestal(Session& session, const std::array<GradeFlorestal, kEtapasFlorestais>& grades);

// frmParcNitroFlo: the need is Nec 0.
float LeNecessidadeNFlorestal(const Session& session);

// The two rows of a dressing of one source of nitrogen, headed "Fonte", and its cost as CustoN
// and as the cost of EtapaFlorest. A source without a dose (no N in it) is refused.
struct FonteNFlorestal {
    Parada recusa;
    GradeFlorestal linhas;
};
FonteNFlorestal GravaFonteNFlorestal(
    Session& session, const QString& fonte, const QVariant& preco, const QString& txtFnt);

} // namespace lavra
