#pragma once

#include "calc/cropstep.h"

#include <QString>
#include <QStringList>
#include <QVariant>

#include <array>
#include <optional>

namespace lavra {

class Store;
struct Session;
class WindowHost;

// ---- Grain crops (frmGraos) -----------------------------------------------------------------

inline const QString kTituloGraos = QStringLiteral("Grupo: Culturas Produtoras de Grãos");
inline const QString kRotuloExpectativa = QStringLiteral("Expectativa de rendimento (t/ha)");
inline const QString kRotuloIncremento = QStringLiteral("Incremento de rendimento (t/ha)");
inline const QString kAvisoSosbai = QStringLiteral(
    "As quantidades de fertilizantes e corretivos para essa cultura são calculadas de acordo com as "
    "indicações da Sociedade Sul-Brasileira de Arroz Irrigado (SOSBAI, 2007).");
inline const QString kMsgSelecioneSemeadura = QStringLiteral("Selecione o sistema de semeadura");
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

struct CalculoGraos : CalculoCultura {
    bool limpaExpectativa = false; // the RS rice increment was refused and txtExpect empties
    // False for irrigated rice: the correction boxes empty and take the colour of a button face.
    bool comCorrecao = false;
};

// cmdCalc: the checks in the window's order, then the reads of GRAON, GRAOPC<n> and GRAOKC<n>
// by the keys of chavesGraos, the rice and maize rules and the gradual correction. On a full run
// it sets CultivoTxt and RefazPlano and leaves ObsAjuste alone. Throws StoreError.
CalculoGraos CalculaGraos(const Store& db, Session& session, const DefinicoesGraos& definicoes);

// The correction table of the session, filled when the window loads. Official: the manual's
// doses by the class of P and K. Gradual: the doses by the P and K of the soil.
void CarregaCorrecaoOficial(Session& session);
void CarregaCorrecaoGradual(Session& session);
// txtPcor, txtFracP, txtParcPcor, txtKcor, txtFracK, txtParcKcor for the rule chosen.
std::array<QString, 6> AplicaCorrecao(const std::array<QVariant, 12>& tabCorrecao, bool gradual);

// Dados(1) of a grain crop: the list text, and for irrigated rice also the sowing system.
QString nomeCulturaGraos(const DefinicoesGraos& definicoes);
// cmdProssegue of the grain window; see ProssegueCultura.
Parada ProssegueGraos(
    Session& session, WindowHost& janelas, const DefinicoesGraos& definicoes, const TextosNec& nec);

} // namespace lavra
