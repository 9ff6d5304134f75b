#pragma once

#include "base/outcome.h"

#include <QString>
#include <QStringList>
#include <QVariant>

#include <array>
#include <optional>

namespace lavra {

struct Session;
class WindowHost;

// The need of a crop in kg/ha as its window shows it: N base, P base, K base, N cob. A box is
// text, and it is empty where no row of the manual was found.
using TextosNec = std::array<QString, 4>;

// ---- Shared by every crop window ------------------------------------------------------------

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

// cmdAjusta: the boxes go to Nec, numbers as 32-bit floats and anything else as its text, so
// that frmAjusta shows them as they stand.
void CopiaParaNec(Session& session, const TextosNec& nec);

// The common part of cmdProssegue: refuses a need that was not calculated or that holds a box
// without a number, writing nothing; otherwise Dados(1) = nomeCultura, Dados(4) = expectativa
// where the crop has one, Nec(0..3) as 32-bit floats, and FechaPlano if the need was
// recalculated since the plan was opened.
std::optional<Desfecho> ProssegueCultura(Session& session, WindowHost& janelas, const QString& nomeCultura,
    std::optional<float> expectativa, const TextosNec& nec);

// ---- Adjustment by the user (frmAjusta) -----------------------------------------------------

// The note on the report, without a full stop, and the question that quotes it with one.
inline const QString kObsAjuste = QStringLiteral(
    "Esta recomendação foi ajustada pelo usuário do programa, consulte-o para saber as razões do ajuste");
QString perguntaAjuste();
inline const QString kMsgCamposNaoNumericos = QStringLiteral("Há campos não numéricos!");

// First every box for emptiness, then every box for a number; nothing when all pass.
std::optional<QString> VerificaAjuste(const QStringList& ajustados);
// The crop window that receives the adjusted figures, by NomeGrupo; empty where none does (the
// forest group has its own adjustment; medicinal plants and cane keep their figures).
QString janelaAjustada(const QString& nomeGrupo);
// After the user agreed: the note goes on the report and the plan is stale.
void AplicaAjuste(Session& session);

// ---- Grain crops (frmGraos) -----------------------------------------------------------------

inline const QString kTituloGraos = QStringLiteral("Grupo: Culturas Produtoras de Grãos");
inline const QString kRotuloExpectativa = QStringLiteral("Expectativa de rendimento (t/ha)");
inline const QString kRotuloIncremento = QStringLiteral("Incremento de rendimento (t/ha)");
inline const QString kAvisoSosbai = QStringLiteral(
    "As quantidades de fertilizantes e corretivos para essa cultura são calculadas de acordo com as "
    "indicações da Sociedade Sul-Brasileira de Arroz Irrigado (SOSBAI, 2007).");
inline const QString kMsgInformeExpectativa = QStringLiteral("Informe a expectativa de rendimento!");
inline const QString kMsgSelecioneCultura = QStringLiteral("Selecione uma cultura!");
inline const QString kMsgSelecioneSemeadura = QStringLiteral("Selecione o sistema de semeadura");
inline const QString kMsgSelecioneCultivoAnterior = QStringLiteral("Selecione o cultivo anterior!");
inline const QString kMsgInformeMassaSeca
    = QStringLiteral("Informe a produção de massa seca do cultivo anterior!");
inline const QString kMsgArrozSemCorrecao
    = QStringLiteral("Para arroz irrigado não se aplica adubação de correção.");
inline const QString kArquivoCorrecao = QStringLiteral("AdubOficGrad.pdf");

// The items of cboSitArz; the third moves the base nitrogen of rice to topdressing.
const QStringList& sistemasSemeadura();
inline constexpr int kPreGerminado = 2;

// The refusal of an RS rice yield increase other than 2, 3 or 4 t/ha.
QString mensagemIncrementoArroz(const QString& cultura);
// Whether the crop click must refuse the increment already typed: only the RS rice, only a
// filled box, only a number other than 2, 3 or 4.
bool recusaIncrementoArroz(int posicao, const QString& expectativa);

// What the grain window holds when its commands run.
struct DefinicoesGraos {
    int posicao = -1; // lstCulturas
    QString expectativa; // txtExpect as typed
    int sistemaSemeadura = 0; // position of cboSitArz
    QString textoSistema; // its text
    QString cultivoAnterior; // the item picked in lstCultAnt, empty when none
    QString massaSeca; // txtMS as typed
    bool ajusteGradual = false; // optAjgrad rather than optRofic
};

struct CalculoGraos {
    // A refusal leaves the window as it was; any other outcome replaces the result boxes.
    std::optional<Desfecho> recusa;
    bool limpaExpectativa = false; // the RS rice increment was refused and txtExpect empties
    bool substituiResultado = false;
    TextosNec nec;
    // False for irrigated rice: the correction boxes empty and take the colour of a button face.
    bool comCorrecao = false;
};

// cmdCalc: the checks in the window's order, then the reads of GRAON, GRAOPC<n> and GRAOKC<n>
// by the keys of chavesGraos, the rice and maize rules and the gradual correction. On a full run
// it sets CultivoTxt and RefazPlano and leaves ObsAjuste alone. Throws StoreError; the shared
// pair is left closed.
CalculoGraos CalculaGraos(Session& session, const DefinicoesGraos& definicoes);

// The correction table of the session, filled when the window loads. Official: the manual's
// doses by the class of P and K. Gradual: the doses by the P and K of the soil.
void CarregaCorrecaoOficial(Session& session);
void CarregaCorrecaoGradual(Session& session);
// txtPcor, txtFracP, txtParcPcor, txtKcor, txtFracK, txtParcKcor for the rule chosen.
std::array<QString, 6> AplicaCorrecao(const std::array<QVariant, 12>& tabCorrecao, bool gradual);

// Dados(1) of a grain crop: the list text, and for irrigated rice also the sowing system.
QString nomeCulturaGraos(const DefinicoesGraos& definicoes);
// cmdProssegue of the grain window; see ProssegueCultura.
std::optional<Desfecho> ProssegueGraos(
    Session& session, WindowHost& janelas, const DefinicoesGraos& definicoes, const TextosNec& nec);

} // namespace lavra
