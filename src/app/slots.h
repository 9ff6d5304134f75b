#pragma once

// The slots of Dados, the session's row of a recommendation. The saved row is the session laid
// flat: its column k from 2 on holds slot k - 1, so every slot is named after the column that
// keeps it.
namespace lavra::slot {

constexpr int deColuna(int coluna) { return coluna - 1; }
constexpr int coluna(int slot) { return slot + 1; }

// The head, alike in the three tables.
inline constexpr int kCultura = 1;
inline constexpr int kCultivoOrdem = 2;
inline constexpr int kDataPlantio = 3;
inline constexpr int kExpectativa = 4;

// A product: its source, price, dose, cost per hectare, quantity and cost in the area, by these
// offsets from the block's first slot.
namespace produto {
inline constexpr int kFonte = 0;
inline constexpr int kPreco = 1;
inline constexpr int kDose = 2;
inline constexpr int kCusto = 3;
inline constexpr int kQuant = 4;
inline constexpr int kCustoTotal = 5;
inline constexpr int kTamanho = 6;
} // namespace produto

// The liming: the material, its PRNT and price, the dose, the cost per hectare, the quantity and
// the cost in the area.
inline constexpr int kCalcFonte = 5;
inline constexpr int kCalcPRNT = 6;
inline constexpr int kCalcPreco = 7;
inline constexpr int kCalcDose = 8;
inline constexpr int kCalcCusto = 9;
inline constexpr int kCalcQuant = 10;
inline constexpr int kCalcCustoTotal = 11;

// The base dressing: the formula of RecoForm, the mixture of RecoFormulac.
inline constexpr int kBase = 12;

// The nitrogen in topdressing and its eight parcels, a dose and a time each.
inline constexpr int kCobFormulas = 18;
inline constexpr int kCobFormulacao = 36;
// The parcels follow the topdressing block.
inline constexpr int kParcelas = produto::kTamanho;
inline constexpr int kParcelasTotal = 8;

// The three dressings of the forest plan, five rows of text each.
inline constexpr int kPlantio = 12;
inline constexpr int kCobFlorest = 17;
inline constexpr int kReposicao = 22;

// The total cost, UltimoSlot of each table.
inline constexpr int kTotalFormulas = 40;
inline constexpr int kTotalFormulacao = 58;
inline constexpr int kTotalFlorest = 27;
// After the total: the adjustment note and the technician's orientations.
namespace fim {
inline constexpr int kAviso = 1;
inline constexpr int kInfo = 2;
} // namespace fim

} // namespace lavra::slot
