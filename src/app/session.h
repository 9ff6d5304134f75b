#pragma once

#include "events.h"
#include "store/manualtables.h"
#include "store/store.h"

#include <QList>
#include <QString>
#include <QVariant>
#include <QVector>

#include <array>
#include <cstdint>

namespace lavra {

// Everything a calculation carries from one window of the chain to the next. There is one
// session for the whole run; each step sets what it owns before anyone reads it.
struct Session {
    Session() = default;
    explicit Session(const QString& databasePath) : db(databasePath) {}

    Store db;
    // How the windows of the run tell each other what happened.
    Eventos eventos;

    static constexpr int kSlots = 101;
    // The recommendation in the making; slot k becomes column k + 1 of the saved row.
    QVector<QVariant> Dados = QVector<QVariant>(kSlots, QVariant(0));
    // The selected analysis row, one element per column of Analises.
    QVector<QVariant> Analise;
    // Final need in kg/ha: 0 N at the base, 1 P2O5, 2 K2O, 3 N in topdressing (32-bit floats).
    std::array<QVariant, 4> Nec{};
    // Forest need: three applications by N, P and K.
    std::array<QVariant, 9> NecFlorest{};
    // Correction table of the grain crops.
    std::array<QVariant, 12> TabCorrecao{};
    // The analyses of one field for the evolution chart, by date, each a row of Analises.
    QList<QVector<QVariant>> EvolAnalises;
    std::int16_t NAnalisesEvol = 0;

    QString NomeCliente;
    QString CodAnalise;
    QString ModoEscolha;
    QString Operacao;
    QString OperacaoInsumo;
    std::int16_t Grupo = 0;
    QString NomeGrupo;
    std::int16_t Cultivo = 0;
    QString CultivoTxt;
    float ExpectHort = 0;
    QString TipoPlano;
    std::int16_t PlanoNum = 0;
    std::int16_t RefazPlano = 0;
    std::int16_t EtapaFlorest = 0;
    QString ObsAjuste;
    QString JanelaAnterior;

    double CustoCalcario = 0;
    double CustoBase = 0;
    double CustoN = 0;
    double CustoEtapa1 = 0;
    double CustoEtapa2 = 0;
    double CustoEtapa3 = 0;

    QString TabelaReco;
    QString TabelaConsulta;
    std::int16_t UltimoSlot = 0;
    QString PlanoTexto;
    QString CodCultivo;
    QString TipoLaudo;
    QString LaudoAnalise;
    QString LaudoCultivo;

    QString NomeTec;
    QString ProfTec;
    QString CreaTec;

    std::int16_t GrafAvulso = 0;
    bool CTCDoFertigrafico = false;
    // What a chart opened from a selection window shows (GrafAvulso 1): the chosen analysis and
    // recommendation. They are kept apart from Analise and Dados, so that looking at a chart
    // never changes a calculation in progress.
    struct EscolhaGrafico {
        QVector<QVariant> analise;
        QVector<QVariant> dados;
        QString planoTexto;
    };
    EscolhaGrafico Grafico;
    // The rows of the manual's tables read by the last calculation of the window that asked to
    // see them, for the window of the tables.
    QList<manual::LinhaUsada> LinhasUsadas;
    // While true, the windows of the chain refuse their close box.
    bool BloqueiaFechar = false;

    // Shared loop counters of the windows.
    std::int32_t i = 0;
    std::int32_t j = 0;

    // The start of a calculation: every slot back to the integer 0 and the six costs to zero.
    void limpaCalculo();
};

} // namespace lavra
