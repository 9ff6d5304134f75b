#pragma once

#include "app/analise.h"
#include "refusal.h"

#include <QDate>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <optional>

namespace lavra {

struct Session;
class Store;

// Copies the row of that code into session.Analise, one element per column. A code with no row
// throws StoreError, as does any failure of the database; the shared pair is left closed.
void CarregaAnalise(Session& session, const QString& codigo);
// The row of that code, one element per column; throws as CarregaAnalise does.
QVector<QVariant> LeAnalise(const Store& db, const QString& codigo);

// The key of an analysis: farm, field and date as dd/mm/yyyy. The client is not part of it, so
// one field cannot carry two analyses of the same day, whoever they belong to.
QString ComporCodigo(const QString& fazenda, const QString& gleba, const QString& data);

// CTC at pH 7 and saturation by bases in %, from Ca, Mg and H+Al in cmolc/dm3 and K in mg/dm3
// (turned into cmolc/dm3 with 399), worked in 32-bit floats. No bases and no acidity give 0 %.
float CTC(float ca, float mg, float hAl, float k);
float SatBases(float ca, float mg, float hAl, float k);

// What names an analysis, and its figures before the columns worked out from them.
struct IdentificacaoAnalise {
    QString codigo, cliente, local, fazenda, gleba;
    QDate data;
    QString numAnalise;
};
struct MedidasAnalise {
    float area = 0, pH = 0, ca = 0, mg = 0, al = 0, hAl = 0, smp = 0, mo = 0, argila = 0, p = 0, k = 0;
    float bases = 0, ctc = 0;  // saturation by bases and CTC
    int metodoP = 1;           // 1 Mehlich I, 2 resin
    int condicao = 1;          // 1 dry land, 2 flooded rice
};
// The whole row of Analises in column order: the figures, the aluminium saturation, four
// reserved zeros and the nine classes of the interpretation.
QVector<QVariant> LinhaAnalise(const IdentificacaoAnalise& id, const MedidasAnalise& m);

// CTC at pH 7 and saturation by bases, as the window shows them with two decimals.
struct CTCCalculada {
    QString ctc;
    QString bases;
};
// Nothing while any of the four is empty or not a number, or when the figures pass what a 32-bit
// float holds. K comes in mg/dm3 and is turned into
// cmolc/dm3 with 399; everything is worked in 32-bit floats.
std::optional<CTCCalculada> CalculaCTC(const QString& ca, const QString& mg, const QString& hAl, const QString& k);

// The entries of the register window, as text, in the order of the window.
struct CamposAnalise {
    QString cliente, local, fazenda, gleba, area, numAnalise;
    QString data;  // dd/mm/yyyy as the masked field shows it
    QString pH, ca, mg, al, hAl, smp, mo, argila, p, k;
    QString ctc, bases;
    bool mehlich = false;  // Opt(0)
    bool resina = false;   // Opt(1)
    bool arroz = false;    // chk
};

// Reads the row of that code and client into the entries, numbers under the machine's setting.
// The CTC and the saturation by bases are not read: the window works them out afresh.
// Throws StoreError when there is no such row.
CamposAnalise LeAnalise(Store& db, const QString& codigo, const QString& cliente);

enum class Resposta { NaoPerguntado, Sim, Nao };

struct EntradaCadastro {
    CamposAnalise campos;
    QString operacao;    // Operacao
    QString codAnalise;  // CodAnalise
    // The answer to the question of an earlier call; each run of Executar asks at most one.
    Resposta resposta = Resposta::NaoPerguntado;
};

// What the window does once the box of the outcome, if any, is shown. A question is asked and the
// routine called again with the answer.
enum class Seguimento {
    Fica,         // the entries stay: a refusal, or No to the rice question
    Concluida,    // written or deleted: back to idle
    NaoExcluida,  // No to the deletion, or no such row: entries cleared, buttons still off
};

struct ResultadoCadastro {
    Parada desfecho;  // the box to show: a refusal, or the question to ask
    Seguimento seguimento = Seguimento::Fica;
    QString codAnalise;  // CodAnalise after the run: a new registration composes it
};

inline const QString kMsgNenhumaAcao = QStringLiteral("Nenhuma ação foi especificada!");
inline const QString kMsgMetodoP = QStringLiteral("Selecione o método de extração de fósforo da análise de solo!");
inline const QString kMsgDuplicacao = QStringLiteral(
    "Duplicação de código! Verificar se está registrando duas análises com as mesmas informacões de Fazenda, "
    "Gleba e Data.");
inline const QString kMsgEdicaoComRecomendacao = QStringLiteral(
    "Esta análise não pode ser editada, porque já existem recomendações calculadas para ela. É preciso primero "
    "excluir as recomendacões e depois editar a análise.");
inline const QString kMsgExclusaoComRecomendacao = QStringLiteral(
    "Esta análise não pode ser excluída, porque já existem recomendações calculadas para ela. É preciso primero "
    "excluir as recomendacões e depois excluir a análise.");
inline const QString kMsgClienteNaoCadastrado = QStringLiteral(
    "Cliente não cadastrado! Escolha o cliente entre os cadastrados, no botão ao lado do campo Cliente, ou "
    "cadastre-o antes em Clientes.");
QString perguntaArroz(bool arroz);
QString perguntaExclusao(const QString& codigo);
QString avisoDataInexistente(const QString& data);

// The client's name exactly as the register holds it, blanks around not counted; nothing when the
// register has no such client. Leaves the shared pair closed; throws StoreError.
std::optional<QString> ClienteRegistrado(Store& db, const QString& nome);

// Executar of the analysis register: blanks around the texts taken off, every check (the client
// must be in the register), then the write or the deletion. The window asks
// the questions this returns and calls again with the answer. A failure of the database throws
// StoreError after undoing what was begun, so that the table stays as it was.
ResultadoCadastro CadastraAnalise(Store& db, const EntradaCadastro& entrada);

// The clients as the selection grids show them: the column names, then one row of texts each.
struct GradeClientes {
    QStringList colunas;
    QVector<QStringList> linhas;
};
GradeClientes LeClientes(Store& db);

// The codes of the analyses whose client is exactly that name, in code order.
QStringList AnalisesDoCliente(Store& db, const QString& cliente);

// The first name that starts with the text, ignoring case; an empty text gives the first name.
// -1 when none does.
int BuscaCliente(const QStringList& nomes, const QString& texto);

} // namespace lavra
