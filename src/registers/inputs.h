#pragma once

#include "refusal.h"
#include "store/store.h"

#include <QVariantList>

namespace lavra {

// A liming material entered or edited is priced at this fixed rate until the next quotation
// update re-prices every row from CotDolar.
inline constexpr double kFatorCorretivo = 1.57;

inline const QString kMsgMsOuIndice = QStringLiteral("O Teor de MS ou índice de eficiência devem ser números");
inline const QString kMsgIndiceNumero = QStringLiteral("O índice de eficiência deve ser número");
inline const QString kMsgMsAte100 = QStringLiteral("O teor de MS deve ser um número menor ou igual a 100");
inline const QString kMsgIndiceAte1 = QStringLiteral("O índice de eficiência deve ser um número menor ou igual a 1");

// The kinds of fertiliser; the kind is not stored, it shows only in which columns hold "---".
enum class TipoAdubo { Nenhum = 0, Mineral = 1, OrganicoSolido = 2, OrganicoLiquido = 3 };

// The fields of the fertiliser register, as typed.
struct Fertilizante {
    QString n, p, k;
    QString especificacao;
    QString custo;  // US$/t
    QString ms, ifn, ifp, ifk;
};

// The checks of a new organic fertiliser; an edit runs none of them.
Parada verificaFertilizante(const Fertilizante& f, TipoAdubo tipo);

// The twelve columns of NPK: the formula from the three grades as typed, P/K (0 when K is 0)
// and the price in reais at the quotation.
QVariantList linhaFertilizante(const Fertilizante& f, float cotacao);

// The four columns of Calcario, priced at the fixed rate.
QVariantList linhaCorretivo(const QString& nome, const QString& prnt, const QString& custo);

// The price of one dollar in reais, the first column of the first row of CotDolar.
float LeCotacao(Store& db);

// Sets the quotation and re-prices every liming material and fertiliser from it, all in one
// transaction: a failure leaves every price on the old quotation.
void AtualizaCotacao(Store& db, float cotacao);

} // namespace lavra
