#include "navigation.h"

#include "app/windownames.h"
#include "store/query.h"
#include "store/storeerror.h"

namespace lavra {

namespace {

// Every closing routine lifts the lock while it works and sets it again at the end, so that
// only the buttons of the chain, through these routines, can close its windows.
template <typename Predicate>
void closeWhere(Session& session, WindowHost& host, Predicate shouldClose)
{
    session.BloqueiaFechar = false;
    for (const QString& name : host.openWindows()) {
        if (shouldClose(name))
            host.closeWindow(name);
    }
    session.BloqueiaFechar = true;
}

} // namespace

bool FechaJanelas(Session& session, WindowHost& host, bool pergunta)
{
    if (pergunta && !host.confirmCancel())
        return false;
    // Closing everything ends the charts too: none brings the Fertigraph back on its way out.
    session.CTCDoFertigrafico = false;
    closeWhere(session, host, [](const QString& name) { return name != kMainWindow; });
    return true;
}

void FechaAposEscolha(Session& session, WindowHost& host)
{
    static const QStringList kept = {janela::kCliAn, janela::kGrupCult, kMainWindow};
    session.CTCDoFertigrafico = false;
    closeWhere(session, host, [](const QString& name) { return !kept.contains(name); });
}

void FechaPlano(Session& session, WindowHost& host)
{
    static const QStringList plan = {janela::kNPK,        janela::kNPKFlorest,
                                     janela::kFormulacao, janela::kParcelaN,
                                     janela::kParcNitroFlo, janela::kFinalCalculo};
    closeWhere(session, host, [](const QString& name) { return plan.contains(name); });
}

void FechaJanela(Session& session, WindowHost& host, const QString& nome)
{
    closeWhere(session, host, [&nome](const QString& name) { return name == nome; });
}

void ReabreJanela(Session& session, WindowHost& host, const QString& nome, const QString& acao)
{
    if (acao != QLatin1String("reabre"))
        return;
    closeWhere(session, host, [&nome](const QString& name) { return name == nome; });
    host.showWindow(nome);
}

namespace {

void copiaRecomendacao(const Store& db, const QString& tabela, const QString& codAnalise,
                       const QString& codCultivo, QVector<QVariant>& dados)
{
    const auto linha = consulta::primeira(
        db, tabela, {{QStringLiteral("CodAnalise"), codAnalise, true}, {QStringLiteral("CodCultivo"), codCultivo, true}});
    if (!linha)
        throw StoreError(QStringLiteral("A recomendação '%1' não foi encontrada.").arg(codCultivo));
    const int columns = std::min(static_cast<int>(linha->size()), static_cast<int>(dados.size()) + 1);
    for (int k = 1; k < columns; ++k)
        dados[k - 1] = linha->at(k);
}

} // namespace

void CarregaRecomendacao(Session& session, const QString& tabela, const QString& codAnalise,
                         const QString& codCultivo)
{
    copiaRecomendacao(session.db, tabela, codAnalise, codCultivo, session.Dados);
    session.CodCultivo = session.Dados[0].toString();
}

QVector<QVariant> LeRecomendacao(const Store& db, const QString& tabela, const QString& codAnalise,
                                 const QString& codCultivo)
{
    QVector<QVariant> dados(Session::kSlots, QVariant(0));
    copiaRecomendacao(db, tabela, codAnalise, codCultivo, dados);
    return dados;
}

void IniciaCalculo(Session& session, WindowHost& host)
{
    FechaJanelas(session, host, false);
    session.ModoEscolha = QStringLiteral("Calcular");
    session.TipoPlano = QStringLiteral("Fórmulas");
    session.limpaCalculo();
}

} // namespace lavra
