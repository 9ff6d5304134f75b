// Times the import of a laboratory's workbook against the plainest pipe that loads the same file
// into the engine (xlsx2csv into sqlite3 .import), and shows the import's peak memory for two
// sizes of workbook, so that its growth with the file can be seen.

#include "common.h"
#include "exchange/importanalysis.h"
#include "exchange/workbook.h"
#include "exchange/xlsxfile.h"
#include "store/database.h"
#include "store/store.h"

#include <QCoreApplication>
#include <QDate>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <cstdio>

using namespace lavra;
using namespace lavra::bench;

namespace {

constexpr int kLinhas = 30000;

QString geraPasta(const QTemporaryDir& dir, int linhas)
{
    QVector<QVector<QVariant>> folha = {{}};
    for (const QString& c : cabecalhosExemplo())
        folha[0] << c;
    for (int i = 0; i < linhas; ++i) {
        folha << QVector<QVariant>{QStringLiteral("Cliente %1").arg(i % 2000), QStringLiteral("Passo Fundo"),
                                   QStringLiteral("Fazenda %1").arg(i % 2000), QStringLiteral("Gleba %1").arg(i / 2000),
                                   12.5, QDate(2015, 1, 1).addDays(i % 3000), QString::number(i),
                                   5.0 + (i % 20) / 10.0, 4.1, 1.8, 0.3, 4.4, 5.9, 2.8, 42.0, 9.5, 120.0, 1,
                                   1 + i % 2};
    }
    const QString caminho = dir.filePath(QStringLiteral("lab%1.xlsx").arg(linhas));
    gravaXlsx(caminho, {FolhaEscrita{QStringLiteral("Plan1"), folha}});
    return caminho;
}

Mapeamento naOrdem()
{
    Mapeamento m{};
    for (int k = 0; k < kCaixas; ++k)
        m[static_cast<std::size_t>(k)] = k + 1;
    return m;
}

// The peak memory of one import alone, in a process of its own, so that nothing a run before it
// left in the heap is counted: "--pico <workbook> <database>" prints it in KiB.
long picoDeUmaImportacao(const QString& pasta, const QString& banco)
{
    QProcess filho;
    filho.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--pico"), pasta, banco});
    filho.waitForFinished(-1);
    return filho.readAllStandardOutput().trimmed().toLong();
}

int importaEMedePico(const QString& pasta, const QString& banco)
{
    zeraPico();
    Store db(banco);
    const Pasta p = abrePasta(pasta, OpcoesLeitura{kColunasEscolhiveis});
    ImportaAnalises(db, *p.planilhas.front(), naOrdem());
    std::printf("%ld\n", picoKb());
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc == 4 && QByteArray(argv[1]) == "--pico")
        return importaEMedePico(QString::fromLocal8Bit(argv[2]), QString::fromLocal8Bit(argv[3]));
    QTemporaryDir dir;
    const QString modelo = dir.filePath(QStringLiteral("modelo.db"));
    database::create(modelo);

    std::vector<Medida> medidas;
    std::vector<std::pair<int, long>> picos;
    for (const int linhas : {kLinhas / 3, kLinhas}) {
        const QString pasta = geraPasta(dir, linhas);
        const QString banco = dir.filePath(QStringLiteral("pico%1.db").arg(linhas));
        QFile::copy(modelo, banco);
        picos.emplace_back(linhas, picoDeUmaImportacao(pasta, banco));
        medidas.push_back(mede(QStringLiteral("import %1 rows (open + ImportaAnalises)").arg(linhas), linhas,
                               [&](int rodada) {
                                   const QString banco = dir.filePath(QStringLiteral("i%1-%2.db").arg(linhas).arg(rodada));
                                   QFile::copy(modelo, banco);
                                   Store db(banco);
                                   const Pasta p = abrePasta(pasta, OpcoesLeitura{kColunasEscolhiveis});
                                   const auto r = ImportaAnalises(db, *p.planilhas.front(), naOrdem());
                                   if (r.adicionadas.size() != linhas)
                                       qFatal("imported %lld of %d rows", static_cast<long long>(r.adicionadas.size()), linhas);
                               }));
    }

    // The same file through the command-line pipe, into a new table made from the heading row.
    const QString pasta = dir.filePath(QStringLiteral("lab%1.xlsx").arg(kLinhas));
    const bool temFerramentas = !QStandardPaths::findExecutable(QStringLiteral("xlsx2csv")).isEmpty()
                                && !QStandardPaths::findExecutable(QStringLiteral("sqlite3")).isEmpty();
    if (temFerramentas) {
        medidas.push_back(mede(QStringLiteral("xlsx2csv | sqlite3 .import, same file"), kLinhas, [&](int rodada) {
            const QString banco = dir.filePath(QStringLiteral("p%1.db").arg(rodada));
            QFile::copy(modelo, banco);
            QProcess sh;
            sh.start(QStringLiteral("sh"),
                     {QStringLiteral("-c"),
                      QStringLiteral("xlsx2csv '%1' | sqlite3 '%2' '.import --csv /dev/stdin Planilha'").arg(pasta, banco)});
            sh.waitForFinished(-1);
            if (sh.exitCode() != 0)
                qFatal("the pipe failed: %s", sh.readAllStandardError().constData());
        }));
    }
    imprime(medidas, 0);
    const Medida& nosso = medidas[1];
    std::printf("\nimport: %.0f rows/s", kLinhas / (nosso.ms / 1000.0));
    if (temFerramentas) {
        const Medida& pipe = medidas[2];
        std::printf("; pipe: %.0f rows/s; import / pipe time: %.2f", kLinhas / (pipe.ms / 1000.0), nosso.ms / pipe.ms);
    } else {
        std::printf("; xlsx2csv or sqlite3 not found, pipe not timed");
    }
    std::printf("\npeak memory of one import in a process of its own:");
    for (const auto& [linhas, pico] : picos)
        std::printf(" %ld KiB for %d rows;", pico, linhas);
    std::printf(" %.2f KiB a row between the two\n",
                double(picos[1].second - picos[0].second) / double(picos[1].first - picos[0].first));
    return 0;
}
