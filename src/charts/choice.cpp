#include "choice.h"

#include "app/navigation.h"
#include "app/session.h"
#include "app/windownames.h"
#include "registers/analysis.h"
#include "report/kinds.h"

namespace lavra {

namespace {

// The PlanoTexto of each kind of saved recommendation, in the order of the kinds.
const std::array<QString, 3> kPlanosTexto = { QStringLiteral("formulas"), QStringLiteral("formulacao"),
    QStringLiteral("floresta") };

} // namespace

const QVector<QVariant>& AnaliseDoGrafico(const Session& session)
{
    return session.GrafAvulso == 1 ? session.Grafico.analise : session.Analise;
}

Pizza ParticipacaoDoGrafico(const Session& session)
{
    if (session.GrafAvulso == 1)
        return ParticipacaoCusto(session.Grafico.dados, session.Grafico.planoTexto,
            session.Grafico.dados.value(0).toString());
    return ParticipacaoCusto(session.Dados, session.PlanoTexto, session.CodCultivo);
}

void EscolheAnaliseDoGrafico(Session& session, const QString& codigo)
{
    session.Grafico.analise = LeAnalise(session.db, codigo);
    session.GrafAvulso = 1;
}

void EscolheRecomendacaoDoGrafico(Session& session, report::TipoLaudo tipo, const QString& codAnalise,
                                  const QString& codCultivo)
{
    QVector<QVariant> analise = LeAnalise(session.db, codAnalise);
    QVector<QVariant> dados = LeRecomendacao(session.db, report::definicao(tipo).tabela, codAnalise, codCultivo);
    session.Grafico = { std::move(analise), std::move(dados), kPlanosTexto[static_cast<std::size_t>(tipo)] };
    session.GrafAvulso = 1;
}

QString JanelaDoModo(const QString& modo)
{
    if (modo == kModoFertigrafico)
        return janela::kChart;
    if (modo == kModoOcupaCTC)
        return janela::kOcupaCTC;
    if (modo == kModoEvolFert)
        return janela::kEvolFert;
    return {};
}

void Abre_ChamaGraf(Session& session, WindowHost& host, const QString& modo)
{
    session.ModoEscolha = modo;
    FechaJanela(session, host, janela::kChamaGraf);
    FechaJanela(session, host, janela::kChamaGrafCusto);
    host.showWindow(janela::kChamaGraf);
}

void OutrasAnalises(Session& session, WindowHost& host, const QString& modo, const QString& janela)
{
    session.ModoEscolha = modo;
    FechaJanela(session, host, janela::kChamaGraf);
    host.showWindow(janela::kChamaGraf);
    FechaJanela(session, host, janela);
}

void OutrasRecomendacoes(Session& session, WindowHost& host)
{
    FechaJanela(session, host, janela::kOcupaCusto);
    FechaJanela(session, host, janela::kChamaGrafCusto);
    host.showWindow(janela::kChamaGrafCusto);
}

void FechaGraficoDoFertigrafico(Session& session, WindowHost& host)
{
    const bool reabre = session.CTCDoFertigrafico;
    session.CTCDoFertigrafico = false;
    if (reabre)
        ReabreJanela(session, host, janela::kChart, QStringLiteral("reabre"));
}

} // namespace lavra
