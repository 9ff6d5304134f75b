#pragma once

#include "base/outcome.h"

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <cstdint>
#include <optional>

namespace lavra {

class Store;
struct Session;

inline const QString kMsgNaoCalcularMarcada = QStringLiteral("A opção não calcular calagem está marcada!");
inline const QString kMsgSelecioneSistema = QStringLiteral("Selecione a cultura ou o sistema de cultivo!");
inline const QString kMsgApenasSaturacao = QStringLiteral(
    "Para esta cultura a calagem é indicada apenas pelo método da saturação por bases! O programa "
    "selecionará o método automaticamente e seguirá o cálculo.");
inline const QString kMsgCalcarioNaoCalculado = QStringLiteral("O calcário não foi calculado.");

// Method codes of table Calagem besides the SMP column ordinals.
inline constexpr int kIndiceCaMg = 444;
inline constexpr int kIndiceSaturacao = 0;

// The fixed rule of the Ca and Mg code gives one tonne of a PRNT 100 material below these.
inline constexpr float kCaMinimo = 2.0f;
inline constexpr float kMgMinimo = 0.5f;
// With P very high, a soil failing one criterion alone is limed only from this Al saturation on.
inline constexpr float kSatAlExcecao = 10.0f;
inline constexpr int kClassePMuitoAlta = 5;

// A data fault that the liming cannot go past (a PRNT of 0, an empty value read as a number) is
// thrown as a critical Desfecho; the window shows it and stays on the step.

// "S" in any case is true.
bool SimNao(const QVariant& texto);

// One row of table Calagem: a crop or cultivation system of a group.
struct SistemaCalagem {
    QString texto;
    int grupo = 0;
    int indice = 0;       // 444 Ca and Mg rule, 0 base saturation only, else the SMP column
    float divisor = 1;    // the dose shown is the amount divided by this
    float a = 0, b = 0, c = 0;
    float vAlvo = 0;
    float pHRef = 0;
    float vRef = 0;
    bool doisCriterios = false;
    bool superficie = false;  // kept with the row; the calculation does not use it
};

// Column 0 of the rows of the group, in table order; the first is the prompt.
QStringList SistemasDoGrupo(Store& db, int grupo);
// The first row of the group with that text; nothing when the table has none.
std::optional<SistemaCalagem> LeSistemaCalagem(Store& db, int grupo, const QString& texto);

// What the window keeps of the analysis; an empty or non-numeric element stays empty and is
// reported only when a calculation needs it.
struct AnaliseCalagem {
    std::optional<float> pH, Ca, Mg, Al, SatAl, V, CTC, IndiceSMP, MO;
    std::optional<std::int16_t> ClasseP;
};
AnaliseCalagem analiseCalagem(const QVector<QVariant>& analise);

enum class MetodoCalagem { Nenhum, SMP, AlMO, SatBases, Media };

struct EntradaCalagem {
    SistemaCalagem sistema;
    AnaliseCalagem analise;
    MetodoCalagem metodo = MetodoCalagem::Nenhum;
    // Column 1 of the current grid row; empty without a row or a number there.
    std::optional<float> prnt;
};

struct Necessidade {
    float quantidade = 0;  // t/ha before the divisor
    // The crop is limed by base saturation only and another method was on: the window says so
    // and turns that method on.
    bool metodoForcado = false;
};

// Whether lime is needed for the system and how much. Throws Desfecho and StoreError.
Necessidade Verifica_Necessidade_PorSistema(Store& db, const EntradaCalagem& entrada);
// The amount by the method of the entry, at the PRNT of the material; 0 with no method.
// Throws Desfecho and StoreError.
float Calcula_PorMetodo(Store& db, const EntradaCalagem& entrada);

// The two labels of the result.
struct ExibicaoCalagem {
    double dose = 0;  // unrounded, after the divisor
    QString resultado;
    QString custo;
};
// Below 1 t/ha the dose shows two decimals, from 1 on one, and a figure that rounds to 0 is
// not priced. Throws Desfecho for a divisor of 0 or a missing price, when they are needed.
ExibicaoCalagem exibeCalagem(float quantidade, float divisor, std::optional<double> preco);

// The current row of the grid of liming materials: columns 0, 1 and 3 as stored.
struct MaterialCalagem {
    QVariant nome;
    QVariant prnt;
    QVariant preco;  // R$/t
};

// Everything cmdCalc reads from the window.
struct PedidoCalagem {
    bool naoCalcular = false;
    int posicaoSistema = 0;
    QString sistema;
    int grupo = 0;
    MetodoCalagem metodo = MetodoCalagem::Nenhum;
    AnaliseCalagem analise;
    std::optional<MaterialCalagem> material;
};

struct ResultadoCalagem {
    Parada desfecho;  // the refusal or the fault
    bool metodoForcado = false;
    float quantidade = 0;
    ExibicaoCalagem exibicao;
};

// The whole of cmdCalc. Database failures throw StoreError.
ResultadoCalagem CalculaCalagem(Store& db, const PedidoCalagem& pedido);

// Everything cmdProssegue reads from the window.
struct EscolhaCalagem {
    bool naoCalcular = false;
    QString resultado;  // the labels as shown
    QString custo;
    std::optional<MaterialCalagem> material;
};

// Writes slots 5 to 11 and CustoCalcario from the figures on the screen, and zeroes the cost of
// the forest dressings outside that group. A refusal or a fault leaves the slots alone, with
// CustoCalcario at 0.
Parada GravaCalagem(Session& session, const EscolhaCalagem& escolha);

// "Não calcular calagem": slots 5 to 11 back to the integer 0.
void ExcluiCalagem(Session& session);

} // namespace lavra
