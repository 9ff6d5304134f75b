#include "choice.h"

#include "app/navigation.h"
#include "app/session.h"
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

} // namespace lavra
