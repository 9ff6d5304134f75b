#include "common.h"

#include "store/database.h"

#include <QDate>
#include <QElapsedTimer>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include <algorithm>
#include <cstdio>

namespace lavra::bench {

QString nomeCliente(int i) { return QStringLiteral("Cliente %1").arg(i, 5, 10, QLatin1Char('0')); }
QString dataAnalise(int i) { return QDate(2000, 1, 1).addDays(i % 9000).toString(QStringLiteral("dd/MM/yyyy")); }
QString codigoAnalise(int i)
{
    return QStringLiteral("Fazenda %1/Gleba %2/").arg(i % kClientes).arg(i / kClientes) + dataAnalise(i);
}
QString codigoCultivo(int i) { return QStringLiteral("Soja-1-") + dataAnalise(i); }

namespace {


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

} // namespace

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


long criaBanco(const QString& caminho)
{
    zeraPico();
    database::create(caminho, QStringLiteral(LAVRA_DATA_DIR));
    const long picoVazio = picoKb();
    povoa(caminho);
    return picoVazio;
}

void imprime(const std::vector<Medida>& medidas, long picoVazio)
{
    std::printf("%-55s %8s %10s %12s\n", "operation", "rows", "ms", "peak KiB");
    for (const Medida& m : medidas)
        std::printf("%-55s %8lld %10.2f %12ld\n", qPrintable(m.operacao), static_cast<long long>(m.linhas), m.ms,
                    m.picoKb);
    std::printf("%-55s %8s %10s %12ld\n", "(small database: create, for comparison)", "-", "-", picoVazio);
}

} // namespace lavra::bench
