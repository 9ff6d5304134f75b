// Times the import of a laboratory's workbook against the plainest pipe that loads the same file
// into the engine (xlsx2csv into sqlite3 .import), and shows the import's peak memory for two
// sizes of workbook, so that its growth with the file can be seen. Then the transfer of a full
// workbook of the spreadsheet edition, every range of its sheet filled.

#include "common.h"
#include "exchange/importanalysis.h"
#include "exchange/migration.h"
#include "exchange/workbook.h"
#include "exchange/xlsxfile.h"
#include "store/database.h"
#include "store/store.h"
#include "oldworkbook.h"

#include <QCoreApplication>
#include <QDate>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
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

// A workbook of the spreadsheet edition with every range full: 5 000 clients, 30 000 analyses, the
// fertilisers, and 5 000 recommendations of each kind, two in five of them of rice.
QString geraPastaAnterior(const QTemporaryDir& dir)
{
    test::PastaAnterior p;
    p.poe(34, QStringLiteral("AG"), QStringLiteral("Agro Sul"));
    for (int l = 100; l <= 5100; ++l)
        p.poe(l, QStringLiteral("V"), QStringLiteral("Cliente %1").arg(l));
    const QVariantList analise = {QStringLiteral("Passo Fundo"), QStringLiteral("Fazenda"), QStringLiteral("Gleba"),
                                  QDate(2005, 8, 15), 12.5, QStringLiteral("123"), 5.4, 4.1, 1.6, 0.3, 4.4, 62.5,
                                  10.6, 5.8, 2.9, 35, 8.2, 120, QStringLiteral("Cliente 100")};
    for (int l = 2; l <= 30000; ++l) {
        p.poe(l, QStringLiteral("A"), QStringLiteral("Análise %1").arg(l));
        for (int k = 0; k < analise.size(); ++k)
            p.poe(l, test::PastaAnterior::letras(k + 2), analise[k]);
    }
    for (int l = 2; l <= 200; ++l) {
        p.poe(l, QStringLiteral("CT"), l % 20);
        p.poe(l, QStringLiteral("CU"), 20);
        p.poe(l, QStringLiteral("CV"), l % 30);
        p.poe(l, QStringLiteral("CW"), QStringLiteral("Formulado %1").arg(l));
    }
    for (int l = 2; l <= 50; ++l) {
        for (const char* c : {"DH", "DJ", "DM"})
            p.poe(l, QString::fromLatin1(c), QStringLiteral("Fonte %1 %2").arg(QString::fromLatin1(c)).arg(l));
        for (const char* c : {"DI", "DK", "DL", "DN", "DO"})
            p.poe(l, QString::fromLatin1(c), l);
    }
    for (int l = 4; l < 5004; ++l) {
        const QString analiseDaLinha = QStringLiteral("Análise %1").arg(2 + (l * 7) % 29999);
        const QString cultura = l % 5 < 2 ? QStringLiteral("Arroz irrigado") : QStringLiteral("Soja");
        for (const auto& [chave, ultima] : {std::pair{"FC", "GQ"}, std::pair{"GR", "IR"}}) {
            const int c0 = test::PastaAnterior::coluna(QString::fromLatin1(chave));
            for (int c = c0 + 5; c <= test::PastaAnterior::coluna(QString::fromLatin1(ultima)); ++c)
                p.poe(l, test::PastaAnterior::letras(c), c * 1.5);
            p.poe(l, test::PastaAnterior::letras(c0), analiseDaLinha);
            p.poe(l, test::PastaAnterior::letras(c0 + 2), cultura);
            p.poe(l, test::PastaAnterior::letras(c0 + 3), 1);
            p.poe(l, test::PastaAnterior::letras(c0 + 4), QDate(2005, 10, 1));
        }
    }
    const QString caminho = dir.filePath(kPastaAnterior);
    if (!p.grava(caminho))
        qFatal("the workbook of the spreadsheet edition was not written");
    return caminho;
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
    const QString anterior = geraPastaAnterior(dir);
    const auto transfere = [&](int rodada, bool soLeitura) {
        const Pasta p = abrePasta(anterior);
        if (soLeitura)
            return;
        const QString banco = dir.filePath(QStringLiteral("m%1.db").arg(rodada));
        QFile::copy(modelo, banco);
        Store db(banco);
        const RelatorioMigracao r = TransfereDados(db, *p.planilha(kPlanilhaAnterior));
        if (r.contagem(QStringLiteral("Analises")).adicionadas != 29999)
            qFatal("transferred %d of 29999 analyses", r.contagem(QStringLiteral("Analises")).adicionadas);
    };
    medidas.push_back(mede(QStringLiteral("spreadsheet edition: read the .xls"), 1, [&](int r) { transfere(r, true); }));
    medidas.push_back(mede(QStringLiteral("spreadsheet edition: read + transfer"), 45000, [&](int r) { transfere(r, false); }));
    imprime(medidas, 0);
    std::printf("spreadsheet edition workbook: %.1f MB\n", double(QFileInfo(anterior).size()) / 1e6);
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
