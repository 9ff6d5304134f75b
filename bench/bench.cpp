// Times, through the logic the windows call, each operation a user waits on in a large database.
// Prints one line per operation: the rows it works on, the median of a few runs in milliseconds,
// and the peak memory of the process while it ran.

#include "app/session.h"
#include "charts/bands.h"
#include "charts/choice.h"
#include "charts/shares.h"
#include "common.h"
#include "plan/finish.h"
#include "registers/analysis.h"
#include "report/laudo.h"
#include "report/saved.h"
#include "store/manualtables.h"

#include <QCoreApplication>
#include <QDate>
#include <QTemporaryDir>

using namespace lavra;
using namespace lavra::bench;

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir pasta;
    const QString caminho = pasta.filePath(QStringLiteral("Lavra.db"));
    const long picoVazio = criaBanco(caminho);

    Session session(caminho);
    Store& db = session.db;
    const QString cliente = nomeCliente(1234);
    const QString codigo = codigoAnalise(1234);
    const QString codigoSalvo = codigoAnalise(5 * (kAnalises / kRecomendacoes));
    const QString cultivoSalvo = codigoCultivo(5);
    QStringList nomes;

    std::vector<Medida> medidas;
    medidas.push_back(mede(QStringLiteral("LeClientes (open frmCliAn/frmAbreLaudo/frmCliente)"), kClientes, [&](int) {
        GradeClientes grade = LeClientes(db);
        nomes.clear();
        for (const QStringList& linha : grade.linhas)
            nomes << linha.value(0);
    }));
    medidas.push_back(mede(QStringLiteral("client search keystroke (BuscaCliente)"), kClientes, [&](int) {
        // Typing "Cliente 049" one key at a time.
        const QString texto = QStringLiteral("Cliente 049");
        for (int n = 1; n <= texto.size(); ++n)
            BuscaCliente(nomes, texto.left(n));
    }));
    medidas.push_back(mede(QStringLiteral("pick a client (AnalisesDoCliente)"), kAnalises,
                           [&](int) { AnalisesDoCliente(db, cliente); }));
    medidas.push_back(mede(QStringLiteral("load analysis (LeAnalise)"), kAnalises,
                           [&](int) { LeAnalise(db, codigo, cliente); }));
    medidas.push_back(mede(QStringLiteral("load analysis (CarregaAnalise)"), kAnalises,
                           [&](int) { CarregaAnalise(session, codigo); }));
    medidas.push_back(mede(QStringLiteral("save new analysis (CadastraAnalise)"), kAnalises, [&](int rodada) {
        EntradaCadastro e;
        e.operacao = kCadastro;
        e.resposta = Resposta::Sim;
        // Whole numbers read the same under any decimal separator.
        e.campos = CamposAnalise{cliente, QStringLiteral("Coxilha"), QStringLiteral("Nova"),
                                 QStringLiteral("G%1").arg(rodada), QStringLiteral("10"), QStringLiteral("1"),
                                 QStringLiteral("01/02/2024"), QStringLiteral("5"), QStringLiteral("4"),
                                 QStringLiteral("2"), QStringLiteral("1"), QStringLiteral("4"),
                                 QStringLiteral("6"), QStringLiteral("3"), QStringLiteral("40"),
                                 QStringLiteral("9"), QStringLiteral("120"), QStringLiteral("10"),
                                 QStringLiteral("60"), true, false, false};
        CadastraAnalise(db, e);
        if (rodada == kRodadas - 1 && AnalisesDoCliente(db, cliente).size() != kAnalises / kClientes + kRodadas)
            qFatal("the new analyses were not saved");
    }));
    medidas.push_back(mede(QStringLiteral("ExisteRecomendacao"), kRecomendacoes,
                           [&](int) { ExisteRecomendacao(db, QStringLiteral("RecoForm"), codigoSalvo, cultivoSalvo); }));
    CarregaAnalise(session, codigo);
    medidas.push_back(mede(QStringLiteral("SalvaRecomendacao"), kRecomendacoes, [&](int rodada) {
        session.Dados[1] = QStringLiteral("Milho");
        session.Dados[2] = QStringLiteral("1");
        session.PlanoNum = 1;
        SalvaRecomendacao(session, QDate(2030, 1, 1 + rodada).toString(QStringLiteral("dd/MM/yyyy")));
    }));
    medidas.push_back(mede(QStringLiteral("RecomendacoesDaAnalise"), kRecomendacoes, [&](int) {
        report::RecomendacoesDaAnalise(db, QStringLiteral("RecoForm"), codigoSalvo);
    }));
    medidas.push_back(mede(QStringLiteral("GravaInfo"), kRecomendacoes, [&](int) {
        report::GravaInfo(db, report::TipoLaudo::Formulas, codigoSalvo, cultivoSalvo, QStringLiteral("Orientação"));
    }));
    medidas.push_back(mede(QStringLiteral("open report (LaudoFormulas)"), kRecomendacoes, [&](int) {
        session.Analise.clear();
        report::LaudoFormulas(session, codigoSalvo, cultivoSalvo);
    }));

    medidas.push_back(mede(QStringLiteral("open Fertigraph (Graf, analysis, bars)"), kAnalises, [&](int) {
        EscolheAnaliseDoGrafico(session, codigo);
        MontaFertigrafico(TabelaGraf::le(db), AnaliseDoGrafico(session));
    }));
    medidas.push_back(mede(QStringLiteral("evolution of a field (CarregaEvolucao)"), kAnalises, [&](int) {
        CarregaEvolucao(session, codigo);
        MontaEvolucao(TabelaGraf::le(db), session.EvolAnalises);
    }));
    medidas.push_back(mede(QStringLiteral("cost share of a saved recommendation"), kRecomendacoes, [&](int) {
        EscolheRecomendacaoDoGrafico(session, report::TipoLaudo::Formulas, codigoSalvo, cultivoSalvo);
        ParticipacaoDoGrafico(session);
    }));
    medidas.push_back(mede(QStringLiteral("manual table for its window (leTabela, Calagem)"), 52, [&](int) {
        manual::leTabela(db, QStringLiteral("Calagem"));
    }));
    medidas.push_back(mede(QStringLiteral("data upgrade at start, every row compared"), 600, [&](int) {
        Connection cn(caminho);
        cn.open();
        cn.execute(QStringLiteral("UPDATE VersaoDados SET Versao = 0"));
        manual::atualizaDados(cn);
        cn.close();
    }));

    imprime(medidas, picoVazio);
    return 0;
}
