#pragma once

#include "base/outcome.h"
#include "plan/formulas.h"

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

// The base dressing as a mixture: a formula or an organic fertiliser in a quantity the user
// states, completed by single sources of P, then K, then N, since the P and K sources may bring
// N with them.

inline const QString kConsultaFormulacao = QStringLiteral("SELECT * FROM NPK;");
inline const QString kSelecione = QStringLiteral("Selecione");
inline const QString kNenhuma = QStringLiteral("Nenhuma");
inline const QString kTotais = QStringLiteral("Totais");

inline const QString kMsgEscolhaFontes = QStringLiteral("Escolher uma opção para as fontes.");
inline const QString kMsgEscolhaTodas
    = QStringLiteral("Escolha uma opção para fórmula ou adubo orgânico e todas as fontes.");
inline const QString kMsgInformeQuantidade = QStringLiteral("Informe a quantidade que será aplicada da fórmula.");
inline const QString kMsgImpossivel = QStringLiteral("Impossível calcular!");

// A number kept as text with either decimal sign, as the fertiliser register stores dry matter and
// efficiency indices: every character but the digits stands for the decimal sign. Nothing when
// the text holds no digit or more than one sign, as "---" does.
std::optional<float> Num_Ponto_Virgula(const QString& texto);

// One row of NPK as the step uses it.
struct Insumo {
    QString formula;       // ordinal 0
    QString especificacao; // ordinal 1, the name the sources are listed by
    NPKkg teor;            // ordinals 2 to 4, in %
    QVariant relacaoPK;    // ordinal 5
    QVariant preco;        // ordinal 7, R$/t
    QString ms;            // ordinals 8 to 11 as typed: "---" where they do not apply
    QString eficN;
    QString eficP;
    QString eficK;

    // Only organic fertilisers carry an efficiency index.
    bool organico() const;
    // How the product list names it: organic ones by name, formulas by their grades.
    QString nomeNaLista() const;
};

struct TabelaFormulacao {
    QStringList colunas;
    QVector<Insumo> linhas; // in the order of the table
};
// Throws StoreError.
TabelaFormulacao LeTabelaFormulacao(Store& db);

// The items of the four lists after "Selecione" and "Nenhuma".
struct ListasFormulacao {
    QStringList produtos; // P and K both above 0
    QStringList fontesN;  // N alone
    QStringList fontesP;  // P without K
    QStringList fontesK;  // K without P
};
ListasFormulacao ListasDaTabela(const TabelaFormulacao& tabela);

// Where one of the lists stands.
struct Escolha {
    enum class Estado { Selecione, Nenhuma, Produto };
    Estado estado = Estado::Selecione;
    QString nome;

    // From the list's position: 0 is "Selecione", 1 "Nenhuma", the rest a fertiliser.
    static Escolha daLista(int posicao, const QString& texto);
    bool produto() const { return estado == Estado::Produto; }
    QString texto() const;
};

struct EntradaFormulacao {
    NPKkg nec;
    Escolha produto;
    Escolha fonteN;
    Escolha fonteP;
    Escolha fonteK;
    QString quantidade; // txtkgF2, kg/ha of the product
};

// flxgResult: the product, the N, P and K sources and the totals, six texts a row.
namespace res {
inline constexpr int kProduto = 0;
inline constexpr int kFonteN = 1;
inline constexpr int kFonteP = 2;
inline constexpr int kFonteK = 3;
inline constexpr int kTotais = 4;
inline constexpr int kLinhas = 5;

inline constexpr int kFonte = 0;
inline constexpr int kAplicar = 1;
inline constexpr int kN = 2;
inline constexpr int kP = 3;
inline constexpr int kK = 4;
inline constexpr int kCusto = 5;
inline constexpr int kColunas = 6;
} // namespace res

using LinhaResultado = std::array<QString, res::kColunas>;
using GradeResultado = std::array<LinhaResultado, res::kLinhas>;

inline const std::array<QString, res::kColunas>& cabecalhoResultado()
{
    static const std::array<QString, res::kColunas> cabecalho { QStringLiteral("Fontes"),
        QStringLiteral("Aplicar (kg/ha)"), QStringLiteral("N fornec. (kg/ha)"), QStringLiteral("P fornec. (kg/ha)"),
        QStringLiteral("K fornec. (kg/ha)"), QStringLiteral("Custo (R$/ha)") };
    return cabecalho;
}

struct ResultadoFormulacao {
    // The refusals of Calcular in their order; a quantity that is no number or out of bounds,
    // and a source whose row lacks its nutrient, refused with the field to correct.
    Parada desfecho;
    // What the quantity box holds afterwards: "0" without a product.
    QString quantidade;
    GradeResultado grade;
};

// The checks of Calcular, then the mixture: the product's supply through its dry matter and
// indices, the P and K sources for what it leaves, and the N source for what all three leave.
// Every figure is a whole number rounded half to even but the product's dose, which stands as
// typed, and the total dose, written in full.
ResultadoFormulacao Calcula_Formulacao(const TabelaFormulacao& tabela, const EntradaFormulacao& entrada);

// Before the plan goes on: a grid without a calculation is refused, and totals more than
// 10 kg/ha from the need ask.
Parada VerificaFormulacao(const GradeResultado& grade, const NPKkg& nec);

// Writes the four blocks of six slots from slot 12, one per row of the grid, and CustoBase, then
// ConcluiBase with the plan of formulation.
DestinoFormula GravaFormulacao(Session& session, const TabelaFormulacao& tabela, const GradeResultado& grade);

// The five rows the forest plan shows for a formulated dressing.
QList<QStringList> LinhasFlorestFormulacao(const Session& session);

} // namespace lavra
