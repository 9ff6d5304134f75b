// Times the query tool and the database copy on a database of an office with years of work in it:
// a query that selects every analysis, written as a workbook and as text, a narrow one, and the
// copy with its integrity check beside a plain copy of the file.

#include "common.h"
#include "exchange/dbcopy.h"
#include "exchange/querytool.h"
#include "store/store.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

using namespace lavra;
using namespace lavra::bench;

namespace {

PedidoConsulta pedido(const Store& db, const QString& campo, int criterio, const QString& informacao)
{
    PedidoConsulta p;
    p.origem = 0;
    p.campos = CamposDaOrigem(db, QStringLiteral("Analises"));
    for (int i = 0; i < p.campos.size(); ++i)
        if (p.campos[i].nome == campo)
            p.campo = i;
    p.criterio = criterio;
    p.informacao = informacao;
    return p;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir pasta;
    const QString caminho = pasta.filePath(QStringLiteral("Lavra.db"));
    const long picoVazio = criaBanco(caminho);
    Store db(caminho);
    const int contem = static_cast<int>(criteriosConsulta().indexOf(QStringLiteral("contém")));
    const int igual = static_cast<int>(criteriosConsulta().indexOf(QStringLiteral("igual a")));
    const PedidoConsulta todas = pedido(db, QStringLiteral("Cliente"), contem, QStringLiteral("cliente"));
    const QString planilha = pasta.filePath(QStringLiteral("consulta.xlsx"));
    const QString texto = pasta.filePath(QStringLiteral("Temp.txt"));
    const auto confere = [](const ResultadoConsulta& r, qint64 esperado) {
        if (r.linhas != esperado)
            qFatal("the query found %lld rows, not %lld", static_cast<long long>(r.linhas), static_cast<long long>(esperado));
    };

    std::vector<Medida> medidas;
    medidas.push_back(mede(QStringLiteral("query: every analysis to a workbook"), kAnalises, [&](int) {
        confere(GeraConsulta(db, todas, SaidaConsulta::Planilha, planilha), kAnalises);
    }));
    medidas.push_back(mede(QStringLiteral("query: every analysis to Temp.txt"), kAnalises, [&](int) {
        confere(GeraConsulta(db, todas, SaidaConsulta::Texto, texto), kAnalises);
    }));
    const double mbPlanilha = QFileInfo(planilha).size() / 1e6;
    const double mbTexto = QFileInfo(texto).size() / 1e6;
    medidas.push_back(mede(QStringLiteral("query: one analysis by its code"), kAnalises, [&](int) {
        confere(GeraConsulta(db, pedido(db, QStringLiteral("Código"), igual, codigoAnalise(1234)), SaidaConsulta::Texto,
                             texto),
                1);
    }));
    medidas.push_back(mede(QStringLiteral("query: nothing found"), kAnalises, [&](int) {
        confere(GeraConsulta(db, pedido(db, QStringLiteral("Gleba"), igual, QStringLiteral("nenhuma")),
                             SaidaConsulta::Planilha, planilha),
                0);
    }));
    int copia = 0;
    medidas.push_back(mede(QStringLiteral("database copy (backup + integrity check)"), kAnalises, [&](int) {
        const QString destino = pasta.filePath(QStringLiteral("copia%1.db").arg(++copia));
        if (!CopiaBanco(caminho, destino, {}))
            qFatal("the copy stopped");
    }));
    medidas.push_back(mede(QStringLiteral("plain copy of the file, for comparison"), kAnalises, [&](int) {
        QFile::copy(caminho, pasta.filePath(QStringLiteral("simples%1.db").arg(++copia)));
    }));
    imprime(medidas, picoVazio);
    std::printf("database file: %.1f MB; workbook of every analysis: %.1f MB; Temp.txt: %.1f MB\n",
                QFileInfo(caminho).size() / 1e6, mbPlanilha, mbTexto);
    return 0;
}
