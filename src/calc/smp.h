#pragma once

#include <optional>

namespace lavra {

class Store;

// How the row of table SMP is found: "SMP" compared the index as text, "Média: SMP e Sat. por
// bases" as a number. On a column of singles both find the same row, the one whose index is the
// same single, and the lookup serves both alike.
enum class ComparacaoSmp { Texto, Numerica };

// The first row of the table stands also for every lower index.
inline constexpr float kMenorIndiceSmp = 4.4f;

// The index as the lookup reads it; the liming window keeps this value from then on.
float indiceSmpConsultado(float indiceSmp);

// The lime need of the column of ordinal `indice` in the first row of SMP that matches the
// index, or nothing when no row matches. A failure of the database (an ordinal the table lacks,
// say) throws StoreError.
std::optional<float> consultaSmp(Store& db, float indiceSmp, int indice, ComparacaoSmp comparacao);

} // namespace lavra
