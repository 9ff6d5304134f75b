#pragma once

#include "base/numbers.h"
#include "base/outcome.h"
#include "calc/crops.h"

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <array>
#include <optional>

namespace lavra {

class Store;
struct Session;
class WindowHost;

// What every crop window shares: the need as its boxes show it, the way on to the plan, the
// user's adjustment and the reading of the manual's tables.

// The need of a crop in kg/ha as its window shows it: N base, P base, K base, N cob. A box is
// text, and it is empty where no row of the manual was found.
using TextosNec = std::array<QString, 4>;

inline const QString kMsgSelecioneCultura = QStringLiteral("Selecione uma cultura!");
inline const QString kMsgInformeExpectativa = QStringLiteral("Informe a expectativa de rendimento!");
inline const QString kMsgSelecioneCultivoAnterior = QStringLiteral("Selecione o cultivo anterior!");
inline const QString kMsgExpectativaInvalida = QStringLiteral("A expectativa de rendimento não é um número válido!");
inline const QString kMsgNaoCalculada = QStringLiteral("A adubação não foi calculada ainda!");
inline const QString kMsgPlanoIndisponivel
    = QStringLiteral("Esta forma de plano de adubação ainda não está disponível nesta versão do programa.");
inline const QString kMsgResultadoIncompleto = QStringLiteral(
    "O resultado final tem campos vazios ou não numéricos, pois faltam dados da cultura nas tabelas "
    "do programa. Use \"Ajustar\" para informar os valores.");

// The text a box receives for a computed number: up to 15 significant digits, so that a sum such
// as (3.3 - 3) x 30 shows as 9 and not as 8.999999999999995; machine's decimal symbol.
QString textoNumero(double valor);

// The plan window that TipoPlano names, "frmNPK" or "frmFormulação"; empty for anything else.
QString janelaDoPlano(const QString& tipoPlano);

// The end of a new calculation: the plan windows still open are stale now. Every crop window but
// the grain one also drops the note of an earlier adjustment.
void NecessidadeRecalculada(Session& session, bool mantemObsAjuste);

// The boxes of a need where the adjustment reads them: numbers as 32-bit floats, anything else
// as its text, so that the adjustment shows them as they stand.
template <std::size_t N>
void copiaNecessidade(std::array<QVariant, N>& destino, const std::array<QString, N>& nec)
{
    for (std::size_t i = 0; i < N; ++i) {
        const auto numero = parseNumber(nec[i]);
        destino[i] = numero ? QVariant(toSingle(*numero)) : QVariant(nec[i]);
    }
}

// cmdAjusta: the boxes go to Nec, numbers as 32-bit floats and anything else as its text, so
// that frmAjusta shows them as they stand.
void CopiaParaNec(Session& session, const TextosNec& nec);

// The boxes of a need as 32-bit floats; nothing when one of them is no number.
template <std::size_t N>
std::optional<std::array<float, N>> necNumerica(const std::array<QString, N>& nec)
{
    std::array<float, N> valores {};
    for (std::size_t i = 0; i < N; ++i) {
        const auto numero = parseNumber(nec[i]);
        if (!numero)
            return std::nullopt;
        valores[i] = toSingle(*numero);
    }
    return valores;
}

// What every crop window writes as it goes on: Dados(1) = nomeCultura, Dados(4) = expectativa
// where the crop has one, and FechaPlano if the need was recalculated since the plan was opened.
void RegistraCultura(Session& session, WindowHost& janelas, const QString& nomeCultura,
    std::optional<float> expectativa);

// The common part of cmdProssegue: refuses a need that was not calculated or that holds a box
// without a number, writing nothing; otherwise Dados(1) = nomeCultura, Dados(4) = expectativa
// where the crop has one, Nec(0..3) as 32-bit floats, and FechaPlano if the need was
// recalculated since the plan was opened.
Parada ProssegueCultura(Session& session, WindowHost& janelas, const QString& nomeCultura,
    std::optional<float> expectativa, const TextosNec& nec);

// The outcome of cmdCalc in a window whose figures are the four boxes alone. A refusal before
// the results were emptied leaves the window as it was; any other outcome replaces the boxes.
struct CalculoCultura {
    Parada desfecho;
    bool substituiResultado = false;
    TextosNec nec;
};

// A fault once the boxes were emptied: the calculation ends with them empty.
template <typename Calculo>
Calculo falhou(Calculo r, Desfecho recusa)
{
    r.desfecho = std::move(recusa);
    r.nec = {};
    return r;
}

// ---- The yield typed after its class (vegetables and cane) ----------------------------------

inline const QString kTituloEntrada = QStringLiteral("Entrada de dados");
inline const QString kMsgFornecaExpectativa = QStringLiteral("Forneça a expectativa de rendimento!");
inline const QString kMsgFornecaNumero = QStringLiteral("Forneça um valor numérico!");
// "Digite um valor de expectativa de rendimento para a classe <faixa> t/ha".
QString perguntaRendimento(const QString& faixa);

// One answer to that question: a refusal, after which it is asked again, or the yield. A closed
// box counts as an empty answer. A number outside the bounds of a yield is refused as well.
struct RespostaRendimento {
    Parada recusa;
    float valor = 0;
};
RespostaRendimento LeRendimento(const QString& resposta);

// ---- Adjustment by the user (frmAjusta) -----------------------------------------------------

// The note on the report, without a full stop, and the question that quotes it with one.
inline const QString kObsAjuste = QStringLiteral(
    "Esta recomendação foi ajustada pelo usuário do programa, consulte-o para saber as razões do ajuste");
QString perguntaAjuste();
inline const QString kMsgCamposNaoNumericos = QStringLiteral("Há campos não numéricos!");

// First every box for emptiness, then every box for a number; nothing when all pass. The
// refusal names the first box of the kind refused, by the names given box by box.
Parada VerificaAjuste(const QStringList& ajustados, const QStringList& campos = {});
// The crop window that receives the adjusted figures, by NomeGrupo; empty where none does.
QString janelaAjustada(const QString& nomeGrupo);
// After the user agreed: the note goes on the report and the plan is stale.
void AplicaAjuste(Session& session);

// ---- The manual's tables ----------------------------------------------------------------------

// A class of the analysis by ordinal. The classes are small integers; a fraction would be cut,
// as Int does.
int classe(const QVector<QVariant>& analise, int ordinal);
// A value of the analysis as the 32-bit float it is kept as; 0 where it has none.
float analiseSingle(const QVector<QVariant>& analise, int ordinal);

// A cell of the manual: a 32-bit float read as the decimal it was typed as; nothing for a cell
// without a number or an ordinal out of the row.
std::optional<double> celula(const QVector<QVariant>& linha, int ordinal);

// The first row whose key equals the consultation's key exactly, or nothing. Throws StoreError.
std::optional<QVector<QVariant>> leLinha(const Store& db, const Consulta& consulta);

// The faults of a calculation that the tables cannot carry through.
Desfecho semLinha(const Consulta& consulta);
Desfecho semValor(const Consulta& consulta, int ordinal);

// Columns of the tables read by yield: the reference yield and the addition for each tonne
// above it.
inline constexpr int kColRendimento = 1;
inline constexpr int kColAdicional = 2;

// A need read by yield: the figure of the class, plus the addition for each tonne of the
// expectation e above the reference yield.
struct Leitura {
    std::optional<double> valor;
    Parada falha;
};
// The cell of one class column in the row of the key: nothing at all where the table has no row
// for it (the box stays empty), a fault where the row has no number there.
Leitura leClasse(const Store& db, const Consulta& consulta, int ordinal);

// referencia stands in for the row's own reference yield where the window sets one.
Leitura necessidadeDaLinha(const QVector<QVariant>& linha, const Consulta& consulta, int ordinalClasse, double e,
    std::optional<double> referencia = std::nullopt);

} // namespace lavra
