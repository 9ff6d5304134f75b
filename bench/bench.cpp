// Builds a large database in a temporary folder and times, through the logic the windows call,
// each operation a user waits on. Prints one line per operation: the rows it works on, the median
// of a few runs in milliseconds, and the peak memory of the process while it ran.

#include "app/session.h"
#include "plan/finish.h"
#include "registers/analysis.h"
#include "report/laudo.h"
#include "report/saved.h"
#include "store/database.h"

#include <QCoreApplication>
#include <QDate>
#include <QElapsedTimer>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

using namespace lavra;

namespace {

constexpr int kClientes = 5000;
constexpr int kAnalises = 100000;
constexpr int kRecomendacoes = 20000;
constexpr int kRodadas = 5;

QString nomeCliente(int i) { return QStringLiteral("Cliente %1").arg(i, 5, 10, QLatin1Char('0')); }
QString dataAnalise(int i) { return QDate(2000, 1, 1).addDays(i % 9000).toString(QStringLiteral("dd/MM/yyyy")); }
QString codigoAnalise(int i)
{
    return QStringLiteral("Fazenda %1/Gleba %2/").arg(i % kClientes).arg(i / kClientes) + dataAnalise(i);
}
QString codigoCultivo(int i) { return QStringLiteral("Soja-1-") + dataAnalise(i); }

// The peak resident memory is reset before each operation, so that each line shows its own.
void zeraPico()
{
    QFile f(QStringLiteral("/proc/self/clear_refs"));
    if (f.open(QIODevice::WriteOnly))
        f.write("5");
}

long picoKb()
{
    QFile f(QStringLiteral("/proc/self/status"));
    if (!f.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& linha : f.readAll().split('\n')) {
        if (linha.startsWith("VmHWM:"))
            return linha.mid(6).trimmed().split(' ').value(0).toLong();
    }
    return -1;
}

void executa(QSqlQuery& q, const QString& sql)
{
    if (!q.exec(sql))
        qFatal("%s: %s", qPrintable(sql), qPrintable(q.lastError().text()));
}

// Plain inserts in one transaction: much faster than the program's own write path, and the rows
// hold what the program would have written.
void povoa(const QString& caminho)
{
    QSqlDatabase banco = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("povoa"));
    banco.setDatabaseName(caminho);
    if (!banco.open())
        qFatal("cannot open %s", qPrintable(caminho));
    {
        QSqlQuery q(banco);
        executa(q, QStringLiteral("PRAGMA synchronous=OFF"));
        banco.transaction();
        q.prepare(QStringLiteral("INSERT INTO Clientes VALUES (?, ?, ?, ?, ?)"));
        for (int i = 0; i < kClientes; ++i) {
            q.addBindValue(nomeCliente(i));
            q.addBindValue(QStringLiteral("Linha %1").arg(i));
            q.addBindValue(QStringLiteral("Passo Fundo"));
            q.addBindValue(QStringLiteral("54 3300-0000"));
            q.addBindValue(QStringLiteral("c%1@exemplo.com.br").arg(i));
            if (!q.exec())
                qFatal("%s", qPrintable(q.lastError().text()));
        }
        QStringList marcas(36, QStringLiteral("?"));
        q.prepare(QStringLiteral("INSERT INTO Analises VALUES (%1)").arg(marcas.join(QLatin1Char(','))));
        for (int i = 0; i < kAnalises; ++i) {
            const QVariantList linha = {codigoAnalise(i), nomeCliente(i % kClientes), QStringLiteral("Coxilha"),
                                        QStringLiteral("Fazenda %1").arg(i % kClientes),
                                        QStringLiteral("Gleba %1").arg(i / kClientes),
                                        QDate(2000, 1, 1).addDays(i % 9000).toString(Qt::ISODate), 12.5,
                                        QString::number(i), 5.4, 4.1, 1.8, 0.3, 4.4, 3.0, 58.0, 10.5, 5.9, 2.8,
                                        42.0, 9.5, 120.0, 1, 1, 0, 0, 0, 0, 2, 3, 3, 2, 3, 4, 3, 2, 3};
            for (const QVariant& v : linha)
                q.addBindValue(v);
            if (!q.exec())
                qFatal("%s", qPrintable(q.lastError().text()));
        }
        q.prepare(QStringLiteral("INSERT INTO RecoForm (CodAnalise, CodCultivo, Cultura, CultivoOrdem, DataPlantio) "
                                 "VALUES (?, ?, ?, ?, ?)"));
        for (int i = 0; i < kRecomendacoes; ++i) {
            const int analise = i * (kAnalises / kRecomendacoes);
            q.addBindValue(codigoAnalise(analise));
            q.addBindValue(codigoCultivo(i));
            q.addBindValue(QStringLiteral("Soja"));
            q.addBindValue(QStringLiteral("1"));
            q.addBindValue(QDate(2000, 1, 1).addDays(i % 9000).toString(Qt::ISODate));
            if (!q.exec())
                qFatal("%s", qPrintable(q.lastError().text()));
        }
        executa(q, QStringLiteral("INSERT INTO Empresa (Empresa) VALUES ('Agronomia Exemplo')"));
        banco.commit();
    }
    banco.close();
    banco = QSqlDatabase();
    QSqlDatabase::removeDatabase(QStringLiteral("povoa"));
}

struct Medida {
    QString operacao;
    qint64 linhas = 0;
    double ms = 0;
    long picoKb = 0;
};

Medida mede(const QString& operacao, qint64 linhas, const std::function<void(int)>& acao)
{
    std::vector<double> tempos;
    long pico = 0;
    for (int rodada = 0; rodada < kRodadas; ++rodada) {
        zeraPico();
        QElapsedTimer relogio;
        relogio.start();
        acao(rodada);
        tempos.push_back(static_cast<double>(relogio.nsecsElapsed()) / 1e6);
        pico = std::max(pico, picoKb());
    }
    std::sort(tempos.begin(), tempos.end());
    return {operacao, linhas, tempos[tempos.size() / 2], pico};
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir pasta;
    const QString caminho = pasta.filePath(QStringLiteral("Lavra.db"));
    const QString dados = QStringLiteral(LAVRA_DATA_DIR);

    zeraPico();
    database::create(caminho, dados);
    const long picoVazio = picoKb();
    povoa(caminho);

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

    std::printf("%-55s %8s %10s %12s\n", "operation", "rows", "ms", "peak KiB");
    for (const Medida& m : medidas)
        std::printf("%-55s %8lld %10.2f %12ld\n", qPrintable(m.operacao), static_cast<long long>(m.linhas), m.ms,
                    m.picoKb);
    std::printf("%-55s %8s %10s %12ld\n", "(small database: create, for comparison)", "-", "-", picoVazio);
    return 0;
}
