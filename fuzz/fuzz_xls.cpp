#include "harness.h"

#include "exchange/biffformulas.h"

#include <QByteArray>
#include <QDir>
#include <QFile>

#include <sanitizer/common_interface_defs.h>

#include <csignal>
#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

namespace {

// The reader runs freexl in a child process and turns whatever goes wrong there into a refusal.
// In that child the handlers of libFuzzer and of the sanitizers must not report the fault as a
// finding of this process, nor write a crash file for it.
void noFilho()
{
    __sanitizer_set_death_callback(nullptr);
    for (const int s : {SIGSEGV, SIGBUS, SIGABRT, SIGILL, SIGFPE, SIGXCPU})
        std::signal(s, SIG_DFL);
    const int nulo = open("/dev/null", O_WRONLY);
    if (nulo >= 0)
        dup2(nulo, STDERR_FILENO);
}
const int g_registrado = pthread_atfork(nullptr, nullptr, noFilho);

// freexl reads only from a path: one file per process, rewritten for every input. The name is
// kept in a plain array, which outlives every destructor run at exit, for the removal.
char g_caminho[512];

const QString& arquivo()
{
    static const QString caminho = [] {
        const QString pasta = QDir(QStringLiteral("/dev/shm")).exists() ? QStringLiteral("/dev/shm") : QDir::tempPath();
        const QString c = QStringLiteral("%1/lavra-fuzz-%2.xls").arg(pasta).arg(getpid());
        std::snprintf(g_caminho, sizeof g_caminho, "%s", QFile::encodeName(c).constData());
        std::atexit([] { unlink(g_caminho); });
        return c;
    }();
    return caminho;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* dados, size_t tamanho)
{
    const QString& caminho = arquivo();
    QFile f(caminho);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate)
        || f.write(reinterpret_cast<const char*>(dados), qint64(tamanho)) != qint64(tamanho)) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(caminho));
        std::abort();
    }
    f.close();
    // The walker of formula results runs in freexl's child, where its faults would go unseen: it
    // is run here as well.
    lavra::leitor::formulasDoArquivo(g_caminho);
    return lavra::fuzz::executa(
        [&](lavra::Pasta& pasta) { lavra::leitor::leXls(caminho, pasta, lavra::fuzz::opcoes()); });
}
