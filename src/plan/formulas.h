#pragma once

#include "base/outcome.h"

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <array>
#include <cstdint>
#include <optional>

namespace lavra {

class Store;
struct Session;

// The base dressing by one commercial formula: which fertilisers suit the need, the dose of the
// chosen one by one of three modes, what that dose supplies, and the slots it leaves in Dados.

inline const QString kConsultaFormulas = QStringLiteral("SELECT * FROM NPK ORDER BY [P/K];");

inline const QString kMsgSemModo = QStringLiteral("Escolha uma forma de cálculo da fórmula!");
inline const QString kMsgSemCalculo = QStringLiteral("Nehum cálculo foi efetuado!");
inline const QString kMsgOrganico = QStringLiteral(
    "Para usar fertilizantes orgânicos acesse a janela apropriada, por meio do comando \"formular ou "
    "adubos orgânicos\", localizado na base desta janela");
inline const QString kMsgSemFertilizante = QStringLiteral("Selecione um fertilizante na lista.");
inline const QString kMsgSemIndicados = QStringLiteral(
    "Nenhuma fórmula comercial fornece N, P e K a menos de 10 kg/ha da necessidade. Use \"Mostrar todos os "
    "fertilizantes\" ou \"Formular ou adubos orgânicos\".");
inline const QString kMsgSemFertilizantes = QStringLiteral(
    "Não há fertilizantes cadastrados. Cadastre-os no menu Arquivo ou use \"Formular ou adubos orgânicos\".");
inline const QString kAcimaDoNormal = QStringLiteral("Acima do Normal");
inline const QString kNaoRequer = QStringLiteral("Não requer!");
inline const QString kIdeal = QStringLiteral("Ideal");

// Need or supply of N, P2O5 and K2O in kg/ha, as the step holds them: 32-bit floats.
struct NPKkg {
    float n = 0;
    float p = 0;
    float k = 0;
};

// Nec 0, 1 and 2, read once as the step opens. The forest plan leaves them as text; a value that
// reads as no number counts as no need.
NPKkg LeNecessidadeBase(const Session& session);

// The caption of the frame over the grid: the three needs and their P/K ratio, "?" without K.
QString TextoNecessidade(const NPKkg& nec);

// Table NPK in P/K order, as read: the column names and every row by ordinal.
struct TabelaNPK {
    QStringList colunas;
    QVector<QVariantList> linhas;
};
// Throws StoreError.
TabelaNPK LeTabelaNPK(Store& db);

// Columns of the grid flxNPK. Column 0 is the fixed margin; the calculation reads the hidden
// columns back as text, so the grid is the only copy of the figures it works on.
namespace flx {
inline constexpr int kFormula = 1;
inline constexpr int kEspecificacao = 2;
inline constexpr int kN = 3;
inline constexpr int kP = 4;
inline constexpr int kK = 5;
inline constexpr int kPK = 6;
inline constexpr int kPreco = 7;
inline constexpr int kEficN = 8;
inline constexpr int kColunas = 9;
} // namespace flx

using LinhaFlx = std::array<QString, flx::kColunas>;

struct GradeFormulas {
    LinhaFlx cabecalho; // empty over the margin and the hidden columns
    QVector<LinhaFlx> linhas;
};

// The tolerance test: every difference supply - need within -10 and +10 kg/ha, ends included.
bool Indicados(const NPKkg& nec, const NPKkg& forn);

// The rows of the grid. With somente, only the fertilisers whose dose by equal differences of P
// and K supplies each nutrient within the tolerance, in the same P/K order; a fertiliser without
// P and K never is. Without it, every row.
GradeFormulas Insere_Indicados(const TabelaNPK& tabela, const NPKkg& nec, bool somente);

// The option group Opt, by index.
enum class ModoCalculo { IntegralizarP = 0, IntegralizarK = 1, DiferencasIguais = 2 };

struct EntradaCalculo {
    NPKkg nec;
    std::optional<ModoCalculo> modo;
    LinhaFlx linha; // the selected row of the grid; all empty when there is none
};

struct ResultadoCalculo {
    // No option chosen, or no fertiliser chosen in the grid: a refusal. An organic fertiliser: a
    // plain box that sends the user to the formulation. A figure that is no number or a division
    // by zero: an information box, the fields kept.
    Parada desfecho;
    // Unrounded, as the status labels compare them.
    float dose = 0;
    float preco = 0;
    NPKkg forn;
    // The boxes: whole numbers rounded half to even, and the cost on the unrounded dose.
    QString txtFormula;
    QString txtCusto;
    std::array<QString, 3> txtForn;
};

ResultadoCalculo Calcula(const EntradaCalculo& entrada);

// The label under one nutrient.
struct SituacaoNutriente {
    QString texto = kAcimaDoNormal;
    bool vermelho = false;
};

// The three labels from the rounded boxes and the unrounded supply. "Não requer!" exists for N
// alone; a difference is red from 11 kg on. With the N box empty all three read "Acima do Normal".
std::array<SituacaoNutriente, 3> SituacaoFornecimento(
    const std::array<QString, 3>& txtForn, const NPKkg& nec, const NPKkg& forn);

// The supply read back from the three boxes; a box that is no number supplies 0.
NPKkg FornecimentoDasCaixas(const std::array<QString, 3>& txtForn);

// Nothing when the supply is within 10 kg/ha of the need for N, P and K; otherwise the question
// whose Yes lets the plan go on.
Parada PerguntaFornecimento(const NPKkg& nec, const NPKkg& forn);

// What the step saves of the chosen formula, as the grid and the dose box show it.
struct EscolhaFormula {
    QString formula; // grid column 1
    QString preco; // grid column 7, R$/t
    QString dose; // txtFormula, kg/ha
};

struct DestinoFormula {
    bool florestal = false; // the forest plan takes the result and this step closes
    bool fechaParcelamento = false; // the need changed: the split must load afresh
};

// Writes slots 12 to 17 and CustoBase, then ConcluiBase with the plan of formulas.
DestinoFormula GravaFormula(Session& session, const EscolhaFormula& escolha);

// Where a base dressing, written to the slots and CustoBase, leads. In the forest group the cost
// goes to the dressing of EtapaFlorest; otherwise the plan becomes this one and a pending
// RefazPlano is consumed here.
DestinoFormula ConcluiBase(Session& session, std::int16_t planoNum, const QString& tipoPlano);

// The rows the forest plan shows for a dressing: the headings, the first of them given, then
// each block of six slots from slot 12 on.
QList<QStringList> LinhasFlorest(const Session& session, const QString& primeiroTitulo, int blocos);

// The two rows of a formula: "Fórmula" and slots 12 to 17.
QList<QStringList> LinhasFlorestFormula(const Session& session);

// A product of two session values as the program's variants give it: the type follows the
// operands (two singles stay single, a double or a text makes a double), and null stays null.
QVariant ProdutoVariant(const QVariant& a, const QVariant& b);

} // namespace lavra
