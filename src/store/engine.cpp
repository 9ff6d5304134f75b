#include "engine.h"

#include "base/numbers.h"
#include "databasefile.h"
#include "errortext.h"
#include "storeerror.h"

#include <QCollator>
#include <QElapsedTimer>
#include <QFile>
#include <QSqlDriver>
#include <QThread>

#include <sqlite3.h>

#include <memory>

namespace lavra {

namespace {

sqlite3* handleOf(const QSqlDatabase& db)
{
    const QVariant handle = db.driver() ? db.driver()->handle() : QVariant();
    if (!handle.isValid() || qstrcmp(handle.typeName(), "sqlite3*") != 0)
        return nullptr;
    return *static_cast<sqlite3* const*>(handle.constData());
}

void dobra(sqlite3_context* context, int, sqlite3_value** args)
{
    if (sqlite3_value_type(args[0]) == SQLITE_NULL) {
        sqlite3_result_null(context);
        return;
    }
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_value_text(args[0]));
    const QByteArray folded = QString::fromUtf8(bytes, sqlite3_value_bytes(args[0])).toCaseFolded().toUtf8();
    sqlite3_result_text(context, folded.constData(), static_cast<int>(folded.size()), SQLITE_TRANSIENT);
}

// Texts in the machine's alphabetical order, case ignored: "ávila" between "Arroio" and "Bagé".
int comparaTextos(void*, int n1, const void* a, int n2, const void* b)
{
    static QString nomeLocale;
    static QCollator ordem;
    // The bare C setting has no alphabet of its own; the program's users write Portuguese.
    const QLocale maquina = machineLocale();
    const QLocale locale = maquina.language() == QLocale::C ? QLocale(QLocale::Portuguese, QLocale::Brazil) : maquina;
    if (locale.name() != nomeLocale) {
        nomeLocale = locale.name();
        ordem = QCollator(locale);
        ordem.setCaseSensitivity(Qt::CaseInsensitive);
    }
    return ordem.compare(QString::fromUtf8(static_cast<const char*>(a), n1),
                         QString::fromUtf8(static_cast<const char*>(b), n2));
}

struct FechaHandle {
    void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
};
using Handle = std::unique_ptr<sqlite3, FechaHandle>;

// The source is the program's own file, told as every failure of it is; the copy's failures
// are about the place the user chose.
QString textoDaFalha(int code, const QString& words, StoreError::Access access)
{
    if (access == StoreError::Access::Read)
        return plainEngineText(code, words);
    switch (engineFailure(code, words)) {
    case EngineFailure::ReadOnly:
    case EngineFailure::CannotOpen:
        return QStringLiteral("A pasta de destino não permite gravar arquivos. Escolha outra pasta.");
    case EngineFailure::DiskFull:
        return QStringLiteral("O disco de destino está cheio. Libere espaço ou escolha outro disco.");
    case EngineFailure::DiskError:
        return QStringLiteral("Houve um erro de gravação no disco de destino. Verifique o disco e tente de novo.");
    default: return words;
    }
}

StoreError falha(sqlite3* handle, int code, const QString& contexto, StoreError::Access access)
{
    // A failure of a backup step may be the other handle's; the code's own words then.
    const bool proprio = handle && sqlite3_errcode(handle) != SQLITE_OK;
    const QString words = QString::fromUtf8(proprio ? sqlite3_errmsg(handle) : sqlite3_errstr(code));
    return StoreError(contexto + QLatin1Char(' ') + textoDaFalha(code & 0xff, words, access), words, access);
}

Handle abre(const QString& caminho, int flags, const QString& contexto, StoreError::Access access)
{
    sqlite3* raw = nullptr;
    const int code = sqlite3_open_v2(QFile::encodeName(caminho).constData(), &raw, flags, nullptr);
    Handle handle(raw);
    if (code != SQLITE_OK)
        throw falha(raw, code, contexto, access);
    sqlite3_busy_timeout(raw, DatabaseFile::busyTimeout());
    return handle;
}

} // namespace

void registraFuncoes(const QSqlDatabase& db)
{
    if (sqlite3* handle = handleOf(db)) {
        sqlite3_create_function_v2(handle, "dobra", 1, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, dobra, nullptr,
                                   nullptr, nullptr);
        sqlite3_create_collation_v2(handle, "lavra", SQLITE_UTF8, nullptr, comparaTextos, nullptr);
    }
}

bool copiaArquivoDeBanco(const QString& origem, const QString& destino, const ProgressoCopia& progresso)
{
    const QString lendo = QStringLiteral("Não foi possível ler o banco de dados.");
    const QString gravando = QStringLiteral("Não foi possível gravar a cópia.");
    Handle fonte = abre(origem, SQLITE_OPEN_READONLY, lendo, StoreError::Access::Read);
    // A file that is no database, or a damaged one, is told before anything is written.
    if (sqlite3_exec(fonte.get(), "SELECT count(*) FROM sqlite_schema", nullptr, nullptr, nullptr) != SQLITE_OK)
        throw falha(fonte.get(), sqlite3_errcode(fonte.get()), lendo, StoreError::Access::Read);

    {
        Handle alvo = abre(destino, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, gravando, StoreError::Access::Write);
        const auto apaga = [&] {
            alvo.reset();
            QFile::remove(destino);
            QFile::remove(destino + QStringLiteral("-journal"));
        };
        sqlite3_backup* copia = sqlite3_backup_init(alvo.get(), "main", fonte.get(), "main");
        if (!copia) {
            const StoreError erro = falha(alvo.get(), sqlite3_errcode(alvo.get()), gravando, StoreError::Access::Write);
            apaga();
            throw erro;
        }
        // A file held by another program's write is waited for, as long as a statement would wait.
        QElapsedTimer espera;
        espera.start();
        int code = SQLITE_OK;
        bool parada = false;
        while (true) {
            code = sqlite3_backup_step(copia, 256);
            if (code == SQLITE_BUSY || code == SQLITE_LOCKED) {
                if (espera.elapsed() > DatabaseFile::busyTimeout())
                    break;
                QThread::msleep(20);
                continue;
            }
            if (code != SQLITE_OK && code != SQLITE_DONE)
                break;
            espera.restart();
            const int total = sqlite3_backup_pagecount(copia);
            if (progresso && !progresso(total - sqlite3_backup_remaining(copia), total)) {
                parada = true;
                break;
            }
            if (code == SQLITE_DONE)
                break;
        }
        const int fim = sqlite3_backup_finish(copia);
        if (parada) {
            apaga();
            return false;
        }
        if (code != SQLITE_DONE || fim != SQLITE_OK) {
            const int primario = code & 0xff;
            const bool leitura = primario == SQLITE_BUSY || primario == SQLITE_LOCKED || primario == SQLITE_CORRUPT
                || primario == SQLITE_NOTADB;
            const StoreError erro = leitura ? falha(fonte.get(), code, lendo, StoreError::Access::Read)
                                            : falha(alvo.get(), code == SQLITE_DONE ? fim : code, gravando,
                                                    StoreError::Access::Write);
            apaga();
            throw erro;
        }
    }
    return true;
}

QStringList verificaIntegridade(const QString& caminho)
{
    const QString contexto = QStringLiteral("Não foi possível verificar a cópia.");
    Handle handle = abre(caminho, SQLITE_OPEN_READONLY, contexto, StoreError::Access::Read);
    QStringList faltas;
    const auto junta = [](void* destino, int, char** valores, char**) {
        static_cast<QStringList*>(destino)->append(QString::fromUtf8(valores[0] ? valores[0] : ""));
        return 0;
    };
    const int code = sqlite3_exec(handle.get(), "PRAGMA integrity_check(10)", junta, &faltas, nullptr);
    if (code != SQLITE_OK)
        throw falha(handle.get(), code, contexto, StoreError::Access::Read);
    if (faltas == QStringList{QStringLiteral("ok")})
        return {};
    return faltas;
}

} // namespace lavra
