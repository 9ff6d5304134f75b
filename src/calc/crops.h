#pragma once

#include "cropgroups.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

namespace lavra {

// The crop lists of the seven crop windows and the keys by which they read the manual's tables.
// A window finds the first row whose column 0 equals the key; the list position, not the text,
// picks the branches, so the order of every list below is part of the design.

// One read of a table; an empty table name means the window reads nothing there.
struct Consulta {
    QString tabela;
    QString chave;
    bool lida() const { return !tabela.isEmpty(); }
};

// The reads of one calculation, in the window's order: nitrogen, phosphorus, potassium.
struct ChavesCultura {
    Consulta n;
    Consulta p;
    Consulta k;
    // What the window leaves in CultivoTxt; empty where it leaves it alone.
    QString cultivoTxt;
};

// --- Grains (group 1) -----------------------------------------------------------------------

namespace graos {
enum Posicao : int {
    Amendoim,
    ArrozSequeiro,
    ArrozIrrigadoRS,
    ArrozIrrigadoSC,
    AveiaBranca,
    AveiaPreta,
    Canola,
    Centeio,
    Cevada,
    ErvilhaForrageira,
    Ervilhaca,
    Feijao,
    Girassol,
    Linho,
    Milho,
    MilhoPipoca,
    NaboForrageiro,
    Painco,
    Soja,
    Sorgo,
    Tremoco,
    Trigo,
    Triticale
};
// Above this yield the SC rice reads the rows of its second band.
inline constexpr double kArrozScLimite = 9;
} // namespace graos

// Legumes: the window writes N 0 itself, and GRAON holds no row for them.
bool nitrogenioZeroGraos(int posicao);
bool arrozIrrigado(int posicao);
// The items of lstCultAnt for the crop; empty when it asks for no previous crop.
QStringList cultivosAnterioresGraos(int posicao);
// "G", "L" or "CP" for the previous crop picked; empty for anything else.
QString sufixoCultivoAnterior(const QString& cultivoAnterior);
// The RS rice takes a yield increase of 2, 3 or 4 t/ha, and nothing else.
bool incrementoArrozRSValido(double incremento);

struct EntradaGraos {
    int posicao = -1;
    QString expectativa; // txtExpect as typed; its number is read under the machine's setting
    QString cultivoAnterior; // the text picked in lstCultAnt
    int classeCtc = 0; // Analise(33)
    int cultivo = 1; // Cultivo
};
ChavesCultura chavesGraos(const EntradaGraos& entrada);

// --- Vegetables (group 2) -------------------------------------------------------------------

namespace hortalicas {
enum Posicao : int { Alcachofra = 1, Alho = 3, Batata = 6, Ervilha = 14, Mandioca = 15, Tomateiro = 25 };
}

// The items of cboExpect after "Selecione"; empty where the list stays disabled.
QStringList expectativasHortalicas(int posicao);
// Cassava reads the rows of sandy soils (clay class 4) apart.
QString digitoArgilaMandioca(int classeArgila);
// posicaoExpectativa is the position of cboExpect (1 for its first class); classeArgila is
// ClasseArgila of Analise(18).
ChavesCultura chavesHortalicas(int posicao, int posicaoExpectativa, int classeArgila, int cultivo);

// --- Forages (group 3) ----------------------------------------------------------------------

namespace forrageiras {
enum Posicao : int {
    Alfafa,
    CapimElefante,
    ConsorciacaoFria,
    ConsorciacaoQuente,
    GramineasAnuaisFria,
    GramineasAnuaisQuente,
    GramineasPerenesFria,
    GramineasPerenesQuente,
    LeguminosasAnuaisFria,
    LeguminosasAnuaisQuente,
    LeguminosasPerenesFria,
    LeguminosasPerenesQuente,
    MilhoSilagem,
    PastagensGramELeg,
    PastagensGramineas,
    PastagensLeguminosas,
    PastagensNativas,
    SorgoSilagem
};
}

enum class RegraNForragem { Nenhuma, EquacaoA, EquacaoB, Tabela };
RegraNForragem regraNitrogenioForragem(int posicao);
// The items of cboCtvoAnt after "Selecione".
const QStringList& cultivosAnterioresForragem();
// posicaoCultivoAnterior is the position of cboCtvoAnt; only "Milho silagem" keys on it.
ChavesCultura chavesForrageiras(int posicao, int posicaoCultivoAnterior, int cultivo);

// --- Forest species (group 4) ---------------------------------------------------------------

namespace florestais {
enum Posicao : int { ErvaMate = 3 };
// Yield bands of erva-mate: below the first limit, up to the second inclusive, above it.
inline constexpr double kErvaMateLimite1 = 6;
inline constexpr double kErvaMateLimite2 = 12;
} // namespace florestais

bool florestalPedeRendimento(int posicao);
// The one read of table FLOREST; rendimento counts for erva-mate only.
Consulta chaveFlorestal(int posicao, double rendimento);

// --- Medicinal, aromatic and condiment plants (group 6) -------------------------------------

// cultivoTxt is what an earlier calculation of groups 1 to 3 left in the session, maybe nothing.
ChavesCultura chavesCondimentares(int posicao, const QString& cultivoTxt);

// --- Sugar cane (group 7) -------------------------------------------------------------------

namespace cana {
enum Posicao : int { CanaPlanta, CanaSoca };
}

// The items of cboExpect after "Selecione".
QStringList expectativasCana(int posicao);
// The cane rows lie in the vegetable tables of the first crop, whatever Cultivo holds.
ChavesCultura chavesCana(int posicao, int posicaoExpectativa);

// --- Bands of the charts (table Graf) -------------------------------------------------------

// The nine bars of the Fertigraph and the nine series of the evolution chart, in bar order.
enum class IndicadorGraf { pH, Ca, Mg, SatAl, SatB, CTC, MO, P, K };
const QList<IndicadorGraf>& indicadoresGraf();

// Prefix of the phosphorus key: metodo is Analise(21) (1 Mehlich, 2 resin), usoArea Analise(22)
// (1 dry land), classeArgila the clay class of Analise(18).
QString prefixoFosforoGraf(int metodo, int usoArea, int classeArgila);
// The key of one bar of an analysis, from the record as CarregaAnalise fills it.
QString chaveGraf(IndicadorGraf indicador, const QVector<QVariant>& analise);

// --- Every read --------------------------------------------------------------------------------

struct ConsultaPossivel {
    QString janela;
    QString tabela;
    QString chave;
    // False where the window reads the key but the table must hold no row for it.
    bool linhaEsperada = true;
};

// Every (table, key) that the crop windows and the two band charts can form, once each, built
// from the lists and key functions above.
QList<ConsultaPossivel> consultasPossiveis();

} // namespace lavra
