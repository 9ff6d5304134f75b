#pragma once

#include "kinds.h"

#include <QString>
#include <QVector>

namespace lavra::report {

// The paper of every report: A4 portrait, in twips (1440 to the inch).
inline constexpr int kLarguraPapel = 11906;
inline constexpr int kAlturaPapel = 16838;
inline constexpr int kMargem = 567;
// The two empty sections above the detail, which is the only one that holds fields.
inline constexpr int kSecoesAcima = 360 + 465;

enum class Alinhamento { Esquerda, Centro, Direita };

// The face is always Arial; a field chooses only its size and weight.
struct Fonte {
    double pontos = 8;
    bool negrito = false;
    bool italico = false;
};

// Where the text of a field comes from.
enum class Origem {
    Legenda,    // the fixed text of the field
    Empresa,    // the column of the company's row
    Analise,    // the element of the session's analysis
    Coluna,     // the ordinal of the saved row
    Assinante,  // the signing technician: name "/" profession
    Crea,       // "CREA: " and the technician's registration
    Florestal,  // the column of the forest plan built from the "#"-joined rows
};

enum class Formato {
    Bruto,   // as it stands; numbers and dates as a grid shows them
    Numero,  // FormataNumero with `casas` decimals
    Classe,  // TextoClasse of the whole part
};

// One named field of the detail, positioned in twips from the detail's top left corner.
struct Campo {
    QString nome;
    int esquerda = 0;
    int topo = 0;
    int largura = 0;
    int altura = 0;
    Alinhamento alinhamento = Alinhamento::Esquerda;
    Fonte fonte;
    Origem origem = Origem::Legenda;
    int indice = 0;
    Formato formato = Formato::Bruto;
    int casas = 0;
    QString texto;  // the caption, for Origem::Legenda
    bool quebraLinhas = false;
    bool moldura = false;
};

// A horizontal rule; the thickness is in points.
struct Traco {
    int esquerda = 0;
    int topo = 0;
    int largura = 0;
    double espessura = 0.5;
};

struct Layout {
    TipoLaudo tipo = TipoLaudo::Formulas;
    int largura = 0;        // width of the printable body
    int alturaDetalhe = 0;
    // Whether lblExpect says "increment" for irrigated rice; the forest layout keeps its caption.
    bool expectativaPorCultura = true;
    QVector<Campo> campos;
    QVector<Traco> tracos;
};

// The fixed page of each kind of report.
const Layout& layoutDe(TipoLaudo tipo);

} // namespace lavra::report
