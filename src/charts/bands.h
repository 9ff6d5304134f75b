#pragma once

#include "base/outcome.h"
#include "chart.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <array>
#include <optional>

namespace lavra {

class Store;
struct Session;

// The fertility charts put every indicator on one scale from 0 to 6432, cut into the five bands
// MB, B, M, A and MA; a value stands inside the stretch of 1240 units of its class.
inline constexpr double kTopoEscala = 6432;
inline constexpr double kAlturaClasse = 1240;

// One row of Graf: where the class begins on the scale, and the indicator's values at its ends.
struct FaixaGraf {
    float base = 0;
    float inferior = 0;
    float superior = 0;
};

// Graf read once. The first row of a key is the one that counts, as a search from the top finds.
class TabelaGraf {
public:
    static TabelaGraf le(const Store& db);
    void insere(const QString& chave, const FaixaGraf& faixa);
    std::optional<FaixaGraf> faixa(const QString& chave) const;

private:
    QHash<QString, FaixaGraf> m_faixas;
};

// The position of a value in its class. The top class has no upper end: the value is added to
// the upper limit, so that the bar climbs ever more slowly and never leaves its band.
double PosicaoNaEscala(float valor, const FaixaGraf& faixa, bool classeDeTopo);

// The nine positions of an analysis row in the order of the bars (pH, Ca, Mg, Sat. Al, Sat. B,
// CTC, MO, P, K); empty where the key has no row in Graf. K is worked out as a 32-bit float.
std::array<std::optional<double>, 9> PosicoesDaAnalise(const TabelaGraf& tabela, const QVector<QVariant>& analise);

// The Fertigraph of one analysis: the bars, the grid of values beside them, and the printed page.
struct Fertigrafico {
    GraficoBarras grafico;
    QList<QStringList> tabela;  // the heading row, then one row per indicator
};
Fertigrafico MontaFertigrafico(const TabelaGraf& tabela, const QVector<QVariant>& analise);
ImpressaoGrafico ImpressaoFertigrafico();

// The analyses of the field of that analysis (same place, farm and field, compared with LIKE) by
// date, into EvolAnalises and NAnalisesEvol. A field of one analysis is told and changes nothing.
// Throws StoreError.
Parada CarregaEvolucao(Session& session, const QString& codigo);
// Nine series, one per indicator, with one value per analysis.
GraficoBarras MontaEvolucao(const TabelaGraf& tabela, const QList<QVector<QVariant>>& analises);
ImpressaoGrafico ImpressaoEvolucao();

} // namespace lavra
